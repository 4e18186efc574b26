#include "projects/net/NetSource.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

std::string CSharp(const char* source) { return FirstClass(NetLanguage::CSharp, source); }
std::string Basic(const char* source) { return FirstClass(NetLanguage::VisualBasic, source); }

TEST(FirstClass, HasItsNamespaces) {
  EXPECT_EQ(CSharp("using System;\nnamespace A.B { namespace C { public sealed class Form1 : Form {} } }"),
            "A.B.C.Form1");
  EXPECT_EQ(CSharp("namespace A { enum E { X } } namespace B { class C { class D {} } }"), "B.C");
  EXPECT_EQ(CSharp("class Alone{}"), "Alone");
  EXPECT_EQ(CSharp("namespace A { struct S {} }"), "");
}

TEST(FirstClass, IsNotInCommentsAndTexts) {
  EXPECT_EQ(CSharp("// class A\n/* class B { */ #region class C\n [X(\"class D {\")] [Y(@\"class \"\"E\\\")] "
                   "class F {}"),
            "F");
  EXPECT_EQ(CSharp("#region class A\nnamespace N {\n#if X\nclass B {}\n#endif\n}"), "N.B");
  EXPECT_EQ(CSharp("[X('{')] namespace N { class A{} }"), "N.A");
}

TEST(FirstClass, OfVisualBasicHasNoRootNamespace) {
  EXPECT_EQ(Basic("Imports System\n' Class A\nPublic Class Form1\n Inherits Form\nEnd Class"), "Form1");
  EXPECT_EQ(Basic("Namespace A.B\nEnd Namespace\nnamespace C\npublic class D\nend class"), "C.D");
  EXPECT_EQ(Basic("Module M\n Dim s = \"Class X\"\nEnd Module"), "");
}

TEST(KeyFileAttribute, IsFoundWhereItIsCompiled) {
  const auto key = [](const char* source, const char* symbols = "") {
    return KeyFileAttribute(NetLanguage::CSharp, source, symbols).value_or("none");
  };
  EXPECT_EQ(key("[assembly: AssemblyKeyFile(\"..\\\\..\\\\key.snk\")]"), "..\\..\\key.snk");
  EXPECT_EQ(key("[assembly: System.Reflection.AssemblyKeyFileAttribute(@\"..\\key.snk\")]"), "..\\key.snk");
  EXPECT_EQ(key("//[assembly: AssemblyKeyFile(\"a\")]\n"), "none");
  EXPECT_EQ(key("[assembly: AssemblyKeyFile(\"\")]"), "");
  const char* conditional =
      "#if STRONG && !(MONO || NETCF)\n[assembly: AssemblyKeyFile(\"a\")]\n#elif OTHER\n"
      "[assembly: AssemblyKeyFile(\"b\")]\n#else\n#if X\n#endif\n[assembly: "
      "AssemblyKeyFile(\"c\")]\n#endif\nclass C{}";
  EXPECT_EQ(key(conditional, "TRACE;STRONG"), "a");
  EXPECT_EQ(key(conditional, "STRONG,MONO"), "c");
  EXPECT_EQ(key(conditional, "OTHER"), "b");
  EXPECT_EQ(key("#if A\n#if B\n#else\n[assembly: AssemblyKeyFile(\"a\")]\n#endif\n#endif", ""), "none");
  EXPECT_EQ(key("#define A\n#if A\n[assembly: AssemblyKeyFile(\"a\")]\n#endif", ""), "a");
}

TEST(KeyFileAttribute, IsFoundInVisualBasic) {
  EXPECT_EQ(KeyFileAttribute(NetLanguage::VisualBasic, "<Assembly: AssemblyKeyFile(\"..\\key.snk\")>", ""),
            "..\\key.snk");
  EXPECT_FALSE(KeyFileAttribute(NetLanguage::VisualBasic, "' <Assembly: AssemblyKeyFile(\"a\")>", ""));
}

}  // namespace
}  // namespace qx
