#include "cli/output/output_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>
#include <system_error>

namespace {

using cli::OutputFile;
namespace fs = std::filesystem;

std::string Content(const fs::path& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Both kinds of temporary files, the one with a name being that of file systems without the other.
class OutputFileTest : public testing::TestWithParam<OutputFile::Temporary> {
 protected:
  OutputFileTest() {
    std::string name = (fs::temp_directory_path() / "output_file_test.XXXXXX").string();
    folder_ = mkdtemp(name.data());
    target_ = folder_ / "target";
  }
  ~OutputFileTest() override { fs::remove_all(folder_); }

  void WriteOld() const { std::ofstream(target_) << "old"; }
  std::size_t Files() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
  }

  fs::path folder_;
  fs::path target_;
};

INSTANTIATE_TEST_SUITE_P(Temporary, OutputFileTest,
                         testing::Values(OutputFile::Temporary::kUnnamed,
                                         OutputFile::Temporary::kNamed),
                         [](const auto& kind) {
                           const bool is_named = kind.param == OutputFile::Temporary::kNamed;
                           return std::string(is_named ? "Named" : "Unnamed");
                         });

TEST_P(OutputFileTest, ReplacesTheFileWhenItIsCommitted) {
  WriteOld();
  OutputFile output(target_, GetParam());
  std::ostream(&output) << "new" << std::flush;
  EXPECT_EQ(Content(target_), "old");
  output.Commit();
  EXPECT_EQ(Content(target_), "new");
  EXPECT_EQ(Files(), 1U);
}

TEST_P(OutputFileTest, LeavesNothingWithoutACommit) {
  WriteOld();
  {
    OutputFile output(target_, GetParam());
    std::ostream(&output) << "new" << std::flush;
    EXPECT_TRUE(output.replaces_file());
  }
  EXPECT_EQ(Content(target_), "old");
  EXPECT_EQ(Files(), 1U);
}

TEST_P(OutputFileTest, KeepsPermissions) {
  WriteOld();
  fs::permissions(target_, fs::perms(0604));
  OutputFile output(target_, GetParam());
  output.Commit();
  EXPECT_EQ(fs::status(target_).permissions(), fs::perms(0604));
}

TEST_P(OutputFileTest, HasAFolderThatExists) {
  EXPECT_THROW(OutputFile(folder_ / "missing" / "target", GetParam()), std::system_error);
}

TEST_P(OutputFileTest, LeavesNothingAfterASignal) {
  WriteOld();
  for (const int number : {SIGINT, SIGQUIT, SIGALRM, SIGUSR1, SIGXCPU, SIGTERM}) {
    EXPECT_EXIT(
        {
          OutputFile output(target_, GetParam());
          std::ostream(&output) << "new" << std::flush;
          raise(number);
        },
        testing::KilledBySignal(number), "");
    EXPECT_EQ(Content(target_), "old");
    EXPECT_EQ(Files(), 1U);
  }
}

TEST(OutputFile, WritesDevicesInPlace) {
  OutputFile output("/dev/null");
  EXPECT_FALSE(output.replaces_file());
  output.Commit();
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

}  // namespace
