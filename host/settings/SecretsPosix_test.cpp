#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "host/settings/Secrets.h"
#include "host/testing/TestFolder.h"

namespace qx {
namespace {

// No test of this program touches the key of who runs it.
class OwnConfiguration : public testing::Environment {
 public:
  void SetUp() override {
    folder_ = std::make_unique<TestFolder>();
    setenv("XDG_CONFIG_HOME", folder_->Path().c_str(), 1);
  }
  void TearDown() override { folder_.reset(); }

 private:
  std::unique_ptr<TestFolder> folder_;
};
[[maybe_unused]] const auto* const kOwnConfiguration =
    testing::AddGlobalTestEnvironment(new OwnConfiguration);

// A configuration folder for one test.
class SecretKey : public testing::Test {
 protected:
  void SetUp() override {
    before_ = std::getenv("XDG_CONFIG_HOME");
    setenv("XDG_CONFIG_HOME", (folder / "deep/config").c_str(), 1);
  }
  void TearDown() override { setenv("XDG_CONFIG_HOME", before_.c_str(), 1); }
  std::string Key() const { return folder / "deep/config/qxhost/secret.key"; }
  std::string Raised(const std::string& secret) {
    try {
      return "decrypted to " + DecryptSecret(secret, "");
    } catch (const Exception& failure) {
      return failure.Message();
    }
  }
  TestFolder folder;

 private:
  std::string before_;
};

TEST_F(SecretKey, IsMadeForItsOwnerAlone) {
  EncryptSecret("hush", "");
  struct stat status {};
  ASSERT_EQ(stat(Key().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(SecretKey, IsNotTouchedForAnEmptyText) {
  EncryptSecret("", "");
  DecryptSecret("", "");
  EXPECT_NE(access(Key().c_str(), F_OK), 0);
}

TEST_F(SecretKey, IsNotMadeByDecrypting) {
  const std::string secret = EncryptSecret("hush", "");
  unlink(Key().c_str());
  EXPECT_EQ(Raised(secret), "The stored secret cannot be decrypted: there is no key " + Key());
  EXPECT_NE(access(Key().c_str(), F_OK), 0);
}

TEST_F(SecretKey, ThatOthersCanReadIsRefused) {
  const std::string secret = EncryptSecret("hush", "");
  chmod(Key().c_str(), 0644);
  EXPECT_EQ(Raised(secret),
            "The key of secrets " + Key() + " can be read by others: make it private with chmod 600");
}

TEST_F(SecretKey, ThatIsDamagedIsNamed) {
  const std::string secret = EncryptSecret("hush", "");
  folder.Write("deep/config/qxhost/secret.key", "short\n");
  EXPECT_EQ(Raised(secret), "The key of secrets " + Key() + " is damaged");
}

TEST_F(SecretKey, OfAnotherUserOpensNothing) {
  const std::string secret = EncryptSecret("hush", "");
  unlink(Key().c_str());
  EncryptSecret("other", "");
  EXPECT_EQ(Raised(secret), "The stored secret cannot be decrypted: it was changed, or made by another user");
}

TEST_F(SecretKey, IsMadeOnceByManyProcesses) {
  constexpr int kProcesses = 16;
  std::vector<pid_t> children;
  for (int i = 0; i < kProcesses; ++i) {
    const pid_t child = fork();
    if (child == 0) {
      folder.Write("secret" + std::to_string(i), EncryptSecret("hush", ""));
      _exit(0);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) waitpid(child, nullptr, 0);
  for (int i = 0; i < kProcesses; ++i) {
    EXPECT_EQ(Raised(folder.Read("secret" + std::to_string(i))), "decrypted to hush");
  }
}

}  // namespace
}  // namespace qx
