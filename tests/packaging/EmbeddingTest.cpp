// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/Files.h"
#include "tests/support/MovieReading.h"
#include "tests/support/NumberedMovie.h"
#include "tests/support/Process.h"

#include <gtest/gtest.h>

#include <sstream>

namespace zelvra::test {
namespace {

/// The engine's development files, installed once for all tests here.
class Embedding : public testing::Test {
protected:
    static void SetUpTestSuite() {
        installed_ = std::make_unique<TemporaryFolder>();
        runChecked({ZELVRA_CMAKE, "--install", ZELVRA_BUILD, "--component", "development", "--prefix",
                    installed_->path()});
    }
    static void TearDownTestSuite() { installed_.reset(); }

    static std::filesystem::path prefix() { return installed_->path(); }

    /// Where Debian and others keep their libraries differs.
    static std::filesystem::path find(const std::string& name) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(prefix())) {
            if (entry.path().filename() == name) {
                return entry.path();
            }
        }
        throw std::runtime_error(name + " is not installed");
    }

    static void expectFrozenExport(const std::filesystem::path& program) {
        const TemporaryFolder folder;
        const std::filesystem::path output = folder / "out.mp4";
        runChecked({program, movieFile({.frames = 60, .container = "mp4"}), output});
        const std::string duration = probe(output, {"-show_format"})["format"]["duration"];
        EXPECT_NEAR(std::stod(duration), 2 + 2, 0.01) << "two seconds of the movie, and two of its freeze";
        const ShownMovie shown = showMovie(output);
        ASSERT_FALSE(shown.frames.empty());
        EXPECT_EQ(shown.frames.back().number, 59);
    }

private:
    static inline std::unique_ptr<TemporaryFolder> installed_;
};

TEST_F(Embedding, HeadersNeedNothingThatIsNotInstalled) {
    std::vector<std::string> command{
        ZELVRA_COMPILER, "-std=c++20", "-fsyntax-only", "-x", "c++", "-I" + (prefix() / "include").string()};
    for (const auto& entry : std::filesystem::recursive_directory_iterator(prefix() / "include")) {
        if (entry.is_regular_file()) {
            command.push_back(entry.path());
        }
    }
    const ProcessResult result = runProcess(command);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
}

TEST_F(Embedding, AProgramFindsTheEngineByCMake) {
    const TemporaryFolder build;
    runChecked({ZELVRA_CMAKE, "-S", ZELVRA_EXAMPLE, "-B", build.path(),
                "-DCMAKE_PREFIX_PATH=" + prefix().string(),
                std::string("-DCMAKE_CXX_COMPILER=") + ZELVRA_COMPILER,
                std::string("-DCMAKE_CXX_FLAGS=") + ZELVRA_LINK_FLAGS});
    runChecked({ZELVRA_CMAKE, "--build", build.path()});
    expectFrozenExport(build / "embed");
}

TEST_F(Embedding, AProgramFindsTheEngineByPkgConfig) {
    const TemporaryFolder build;
    const std::string search = "PKG_CONFIG_PATH=" + find("zelvracore.pc").parent_path().string();
    const std::string flags =
        runChecked({"env", search, "pkg-config", "--cflags", "--libs", "zelvracore"}).output;
    std::vector<std::string> command{ZELVRA_COMPILER, "-std=c++20", std::string(ZELVRA_EXAMPLE) + "/main.cpp",
                                     "-o", build / "embed"};
    std::istringstream words(flags + " " + ZELVRA_LINK_FLAGS);
    command.insert(command.end(), std::istream_iterator<std::string>(words), {});
    runChecked(command);
    expectFrozenExport(build / "embed");
}

} // namespace
} // namespace zelvra::test
