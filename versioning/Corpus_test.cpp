// The rewriters and the reader against the model of the rules, over files that nobody here wrote.
#include <gtest/gtest.h>

#include <cstdio>
#include <iostream>
#include <set>

#include "host/testing/TestFolder.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/TextFile.h"
#include "versioning/AssemblyAttributes.h"
#include "versioning/RulesModel.h"
#include "versioning/SourceText.h"
#include "versioning/VersionBlock.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

// The corpus lies beside the source tree; it is no part of it.
const fs::path kCorpus = fs::path(QX_SOURCE_DIR).parent_path() / "shared" / "corpus";

std::vector<fs::path> FilesNamed(bool (*wanted)(const fs::path&)) {
  std::vector<fs::path> files;
  if (!fs::exists(kCorpus)) return files;
  for (const auto& entry : fs::recursive_directory_iterator(kCorpus)) {
    if (entry.is_regular_file() && wanted(entry.path())) files.push_back(entry.path());
  }
  return files;
}
std::vector<fs::path> AssemblyInfos() {
  return FilesNamed([](const fs::path& path) {
    return LowerCase(path.filename().string()).find("assemblyinfo.") != std::string::npos;
  });
}
std::vector<fs::path> Scripts() {
  return FilesNamed([](const fs::path& path) {
    const std::string extension = LowerCase(path.extension().string());
    return extension == ".rc" || extension == ".rc2";
  });
}
std::string BytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

using Values = std::map<AssemblyAttribute, std::string>;

std::string Stamp(const std::string& bytes, const std::string& extension, const Values& values) {
  const SourceText source(bytes, "A", PlainAscii::IsUtf8);
  const std::string text = StampAssemblyInfo(
      source.Text(), extension,
      [&](AssemblyAttribute attribute) {
        const auto found = values.find(attribute);
        return found == values.end() ? std::nullopt : std::optional(found->second);
      },
      [&](const std::string& value, std::string_view name) { return source.Fit(value, name); },
      [](const std::string&) {});
  std::string storage, joined;
  for (const std::string_view piece : source.Encode({text}, storage)) joined += piece;
  return joined;
}

std::string Replace(const std::string& bytes, const std::string& block) {
  SourceText source(bytes, "A.rc", PlainAscii::IsSystemCodePage);
  const std::string_view script = source.NormalText();
  const auto place = FindVersionBlock(script, "A.rc");
  std::string storage, joined;
  for (const std::string_view piece :
       source.Encode({script.substr(0, place.begin), block, script.substr(place.end)}, storage)) {
    joined += piece;
  }
  return joined;
}

template <class Function>
std::string ResultOrError(Function&& function) {
  try {
    return function();
  } catch (const Exception& error) {
    const std::string& text = error.Message();
    if (text.rfind("The VERSIONINFO block is not closed", 0) == 0) return "error: not closed";
    if (text.find("is not a valid integer value") != std::string::npos) return "error: conversion";
    return "error: " + text;
  }
}

std::string Describe(const std::string& bytes) {
  std::string decoded;
  const auto reading = ReadVersionBlock(DecodeText(bytes, decoded), "A.rc");
  std::string text;
  if (reading.numbers) {
    const auto& n = *reading.numbers;
    text += " numbers " + std::to_string(n[0]) + "." + std::to_string(n[1]) + "." + std::to_string(n[2]) +
            "." + std::to_string(n[3]);
  }
  if (reading.flags) {
    const auto& f = *reading.flags;
    char hex[16];
    std::snprintf(hex, sizeof hex, " flags %02X",
                  (f.isDebug ? 1U : 0U) | (f.isPreRelease ? 2U : 0U) | (f.isSpecial ? 0x20U : 0U) |
                      (f.isPrivate ? 8U : 0U));
    text += hex;
  }
  if (reading.isDll) text += *reading.isDll ? " dll 1" : " dll 0";
  if (reading.locale) text += " locale " + std::to_string(*reading.locale);
  if (reading.codePage) text += " page " + std::to_string(*reading.codePage);
  return text;
}

// A file's bytes in the other encodings, where its characters are ASCII.
std::vector<std::string> InEveryEncoding(const std::string& bytes) {
  std::vector<std::string> all = {bytes};
  for (const char c : bytes) {
    if (static_cast<unsigned char>(c) >= 0x80) return all;
  }
  std::string little = "\xFF\xFE", big = "\xFE\xFF";
  for (const char c : bytes) {
    little.append(1, c).append(1, '\0');
    big.append(1, '\0').append(1, c);
  }
  all.push_back("\xEF\xBB\xBF" + bytes);
  all.push_back(little);
  all.push_back(big);
  return all;
}

// Whether what was appended is no attribute line itself, for want of a model or because the last model was a
// comment: such a file gets the same lines again at every run, as the rules have it.
bool AddsNoAttributeLine(const std::string& stamped) {
  const auto& lines = model::Load(stamped).lines;
  return !lines.empty() && !lines.back().empty() &&
         ((lines.back()[0] == 0 && lines.back().find(u": Assembly") == 1) ||
          lines.back().rfind(u"/assembly: Assembly", 0) == 0 ||
          lines.back().rfind(u"/Assembly: Assembly", 0) == 0);
}

const Values kAll = {{AssemblyAttribute::Title, "New title"},   {AssemblyAttribute::Comment, "c"},
                     {AssemblyAttribute::Company, "$1 \\ & %"}, {AssemblyAttribute::Description, "d"},
                     {AssemblyAttribute::Copyright, "(C)"},     {AssemblyAttribute::Trademark, "TM"},
                     {AssemblyAttribute::Product, "P"},         {AssemblyAttribute::FileVersion, "7.6.5.4"},
                     {AssemblyAttribute::Version, "4.5.6.7"}};
const Values kVersionOnly = {{AssemblyAttribute::Version, "4.5.6.7"}};

#define SKIP_WITHOUT_CORPUS(files) \
  if ((files).empty()) GTEST_SKIP() << "no files at " << kCorpus

TEST(Corpus, AssemblyInfoFilesAreStampedAsTheModelSays) {
  const auto files = AssemblyInfos();
  SKIP_WITHOUT_CORPUS(files);
  std::set<std::string> withoutModel;
  for (const fs::path& path : files) {
    for (const std::string& bytes : InEveryEncoding(BytesOf(path))) {
      for (const Values& values : {kAll, kVersionOnly, Values{}}) {
        const std::string extension = path.extension().string();
        const std::string stamped = Stamp(bytes, extension, values);
        EXPECT_EQ(stamped, model::StampAssemblyInfo(bytes, extension, values)) << path;
        if (AddsNoAttributeLine(stamped)) {
          withoutModel.insert(path.string());
        } else {
          EXPECT_EQ(Stamp(stamped, extension, values), stamped) << path;
        }
      }
    }
  }
  for (const std::string& path : withoutModel) std::cout << "grows with every run: " << path << "\n";
  EXPECT_LT(withoutModel.size(), files.size() / 4);
}

TEST(Corpus, VersionBlocksAreReplacedAsTheModelSays) {
  const auto files = Scripts();
  SKIP_WITHOUT_CORPUS(files);
  VersionValues values;
  values.numbers = {7, 6, 5, 4};
  values.keys = {"CompanyName=ACME", "FileVersion="};
  const std::string block =
      WriteVersionBlock(values, BlockStrings(values, [](const std::string& text) { return text; }));
  int replaced = 0;
  for (const fs::path& path : files) {
    for (const std::string& bytes : InEveryEncoding(BytesOf(path))) {
      std::string error;
      const auto expected = model::ReplaceVersionBlock(bytes, block, error);
      const std::string actual = ResultOrError([&] { return Replace(bytes, block); });
      EXPECT_EQ(actual, expected ? *expected : "error: " + error) << path;
      if (!expected) continue;
      ++replaced;
      EXPECT_EQ(Replace(actual, block), actual) << path;
    }
  }
  EXPECT_GT(replaced, 20);
}

TEST(Corpus, VersionBlocksAreReadAsTheModelSays) {
  const auto files = Scripts();
  SKIP_WITHOUT_CORPUS(files);
  for (const fs::path& path : files) {
    for (const std::string& bytes : InEveryEncoding(BytesOf(path))) {
      EXPECT_EQ(ResultOrError([&] { return Describe(bytes); }), model::DescribeVersionBlock(bytes)) << path;
    }
  }
}

}  // namespace
}  // namespace qx
