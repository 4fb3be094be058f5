// SPDX-License-Identifier: GPL-3.0-or-later
// The long part of a file: every byte at its place whichever way a block takes, and a disk that
// takes no more is told.
#include "core/diskwriter.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

#include "core/besidefile.h"
#include "core/runtime.h"
#include "tests/support/recorder.h"

namespace fs = std::filesystem;

// Numbers that count up tell every misplaced byte.
static std::string counting(std::size_t size) {
    std::string content;
    for (std::uint64_t i = 0; content.size() < size; ++i)
        content.append(reinterpret_cast<const char*>(&i), sizeof i);
    content.resize(size);
    return content;
}

// Memory is faster than any disk: some blocks find the writer behind.
TEST(Diskwriter, EveryByteStandsInItsPlace) {
    sessionroom room;
    const std::string content = counting(10 * diskwriter::block + 12345);
    const struct {
        const char* name;
        std::size_t from;   // a place that is no multiple of a page makes the disk refuse
        std::size_t piece;  // of the content at a time
    } rows[] = {
        {"aligned", diskwriter::block, 700001},
        {"one piece", 0, content.size()},
        {"refused", 100, 3 * diskwriter::block},
    };
    for (const auto& row : rows) {
        const std::string path = room.file("a");
        writefile(path, content.substr(0, row.from));
        const int file = open(path.c_str(), O_RDWR | O_CLOEXEC);
        const auto disk = diskwriter::from(file, (long long)(row.from));
        if (!disk) GTEST_SKIP() << "this file system has no such way";
        for (std::size_t at = row.from; at < content.size(); at += row.piece)
            disk->write(content.data() + at, std::min(row.piece, content.size() - at));
        EXPECT_TRUE(disk->finish()) << row.name;
        close(file);
        EXPECT_TRUE(contentof(path) == content) << row.name;
    }
}

namespace {
// Stands for a full disk: no file of this process grows beyond so many bytes.
class sizelimit {
  public:
    explicit sizelimit(std::size_t bytes) : signalled(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &former);
        const rlimit now = {bytes, former.rlim_max};
        setrlimit(RLIMIT_FSIZE, &now);
    }
    ~sizelimit() {
        setrlimit(RLIMIT_FSIZE, &former);
        std::signal(SIGXFSZ, signalled);
    }

  private:
    void (*signalled)(int);
    rlimit former{};
};
}  // namespace

TEST(Diskwriter, AFullDiskLeavesTheFormerContent) {
    sessionroom room;
    const std::string content = counting(12 * diskwriter::block), path = room.file("a");
    // In the beginning of a long file, behind a block of its rest, within one. There is room again
    // when it ends: what is wrong by then stays so.
    for (const std::size_t blocks : {0, 5, 6}) {
        writefile(path, "former");
        int errornumber = 0;
        const auto write = [&] {
            besidefile out(path);
            {
                const std::size_t within = blocks % 2 == 0 ? 8192 : 0;
                const sizelimit full(blocks * diskwriter::block + within);
                out.write(content.data(), content.size());
            }
            out.replacetarget();
        };
        guarded(write, [&](const runtimeerror& e) { errornumber = e.number; });
        EXPECT_EQ(errornumber, errdiskfull) << blocks;
        EXPECT_TRUE(contentof(path) == "former") << blocks;
        const auto left = fs::directory_iterator(room.folder);
        EXPECT_TRUE(std::ranges::none_of(left, [](const auto& entry) {
            return !besidemark(entry.path().string()).empty();
        })) << blocks;
    }
}

// A whole block, which the thread writes, and what is left of one at the end.
TEST(Diskwriter, ADiskThatHasNoRoomForTheLastByteIsTold) {
    sessionroom room;
    const std::string content = counting(diskwriter::block + 100);
    for (const std::size_t size : {diskwriter::block, content.size()})
        for (const std::size_t missing : {0, 1}) {
            writefile(room.file("a"), "");
            const int file = open(room.file("a").c_str(), O_RDWR | O_CLOEXEC);
            const auto disk = diskwriter::from(file, 0);
            if (!disk) GTEST_SKIP() << "this file system has no such way";
            const sizelimit full(size - missing);
            disk->write(content.data(), size);
            EXPECT_EQ(disk->finish(), missing == 0) << size;
            close(file);
        }
}
