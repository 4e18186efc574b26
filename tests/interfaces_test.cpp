// Interfaces as packages hold them: the query made from a list of bases, and the pointer that counts.
#include <gtest/gtest.h>

#include "plugin/Qxprocess.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

// An object behind two interfaces answers for both and for the root; the pointer counts.
class IFirst : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{11111111-1111-1111-1111-111111111111}");
  using Base = IInterface;
  virtual int First() = 0;
};
class ISecond : public IFirst {
 public:
  static constexpr TGUID IID = Guid("{22222222-2222-2222-2222-222222222222}");
  using Base = IFirst;
  virtual int Second() = 0;
};
class IThird : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{33333333-3333-3333-3333-333333333333}");
  using Base = IInterface;
  virtual int Third() = 0;
};
class Many : public Implements<ISecond, IThird> {
 public:
  explicit Many(bool* gone) : gone_(gone) {}
  ~Many() override { *gone_ = true; }
  int First() override { return 1; }
  int Second() override { return 2; }
  int Third() override { return 3; }

 private:
  bool* gone_;
};

TEST(Interfaces, QueryFindsEveryBaseAndNothingElse) {
  bool gone = false;
  {
    const InterfacePtr<Many> many = MakeInterface<Many>(&gone);
    EXPECT_EQ(Query<IFirst>(many.get())->First(), 1);
    EXPECT_EQ(Query<ISecond>(many.get())->Second(), 2);
    const InterfacePtr<IThird> third = Query<IThird>(many.get());
    EXPECT_EQ(third->Third(), 3);
    EXPECT_EQ(Query<ISecond>(third.get())->Second(), 2);
    EXPECT_TRUE(Query<IInterface>(third.get()) == Query<IInterface>(many.get()));
    EXPECT_FALSE(Query<IQXProcess>(third.get()));
  }
  EXPECT_TRUE(gone);
}

TEST(Interfaces, PointerCountsEachHolderOnce) {
  bool gone = false;
  auto* raw = new Many(&gone);
  InterfacePtr<Many> holder = InterfacePtr<Many>::Share(raw);
  InterfacePtr<IThird> other = holder;
  EXPECT_EQ(raw->_AddRef(), 3);
  EXPECT_EQ(raw->_Release(), 2);
  holder = nullptr;
  EXPECT_FALSE(gone);
  InterfacePtr<IThird> adopted = InterfacePtr<IThird>::Adopt(other.Detach());
  EXPECT_FALSE(other);
  adopted = nullptr;
  EXPECT_TRUE(gone);
}

}  // namespace
}  // namespace qx
