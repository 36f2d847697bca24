#pragma once

#include "VelmoCore/Files/FileTransfer.h"
#include "VelmoCore/Foundation/LocalizedError.h"

#include "tests/VelmoSystem/SystemCalls.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <unistd.h>

namespace velmo {

namespace fs = std::filesystem;

using Contents = std::multiset<std::string>;

/// Two folders on two file systems, and everything in them.
class FileFaultsFixture : public testing::Test {
protected:
    ~FileFaultsFixture() override
    {
        clear(here);
        clear(there);
    }

    static void clear(const fs::path &root)
    {
        if (!fs::exists(root))
            return;
        for (const auto &entry : fs::recursive_directory_iterator(root)) {
            if (entry.is_directory() && !entry.is_symlink())
                fs::permissions(entry, fs::perms::owner_all);
        }
        fs::remove_all(root);
    }

    /// Starts again with a tree of the user's in `here`.
    void arrange()
    {
        clear(here);
        clear(there);
        fs::create_directories(here / "pasta/funda");
        fs::create_directory(there);
        write(here / "pasta/a.txt", "um");
        write(here / "pasta/funda/b.txt", "dois");
        fs::create_symlink("a.txt", here / "pasta/link");
        fs::permissions(here / "pasta/funda", fs::perms::owner_read | fs::perms::owner_exec);
        expected = {"um", "dois"};
    }
    static void write(const fs::path &path, const std::string &content)
    {
        std::ofstream(path, std::ios::app) << content;
    }
    static Contents contents(const fs::path &root)
    {
        Contents found;
        for (const auto &entry : fs::recursive_directory_iterator(root)) {
            std::ifstream file(entry.path());
            if (entry.is_regular_file() && !entry.is_symlink() &&
                entry.path().parent_path().filename() != "Shelf")
                found.emplace(std::istreambuf_iterator<char>(file),
                              std::istreambuf_iterator<char>());
        }
        return found;
    }
    Contents everything() const
    {
        Contents found = contents(here);
        if (fs::exists(there))
            found.merge(contents(there));
        return found;
    }
    QUrl url(const fs::path &path) const
    {
        return QUrl::fromLocalFile(QString::fromStdString(path));
    }
    /// The error's text; empty where there is none.
    static std::string failure(const std::function<void()> &act)
    {
        try {
            act();
        } catch (const LocalizedError &error) {
            return error.what();
        }
        return {};
    }
    std::string moveOver()
    {
        return failure(
            [&] { FileTransfer::moveUnique(url(here / "pasta"), url(there / "pasta")); });
    }

    /// `act` once for each of its system calls, with `before` in front of that one.
    void interruptEach(const std::function<int()> &before, const std::function<std::string()> &act,
                       const std::function<void(const std::string &failure)> &check,
                       bool isLasting = false)
    {
        for (int at = 1;; ++at) {
            arrange();
            SystemCalls::interrupt(at, isLasting, before);
            const std::string text = act();
            const bool wasInterrupted = SystemCalls::stop();
            SCOPED_TRACE("call " + std::to_string(at) + ": " + text);
            check(text);
            if (HasFailure())
                return;
            if (!wasInterrupted) {
                EXPECT_EQ(text, "");
                EXPECT_GT(at, 5);
                return;
            }
        }
    }

    TemporaryFolder folder;
    const fs::path here = folder.path(QStringLiteral("aqui")).toStdString();
    const fs::path there = "/dev/shm/orvane-faults-" + std::to_string(::getpid());
    Contents expected;
};

} // namespace velmo
