// SPDX-License-Identifier: GPL-3.0-or-later
// The copy of unsaved work: the lists in use of the model's table as they stand in memory, each
// under its name. Numbers are the machine's own; the copy never leaves it.
#include "files/recovery.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "core/journal.h"
#include "core/keptmodel.h"
#include "core/model.h"
#include "core/modeltable.h"
#include "core/newmodel.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"

namespace fs = std::filesystem;

static const char mark[] = "Kalvane unsaved work 1\n", endmark[] = "end of unsaved work\n";
static const char copyname[] = "model.copy";
static const std::size_t block = 4096;  // bytes; blocks of zeros are left out

static array1<float>* const viewnumbers[] = {&viewptx,   &viewpty,  &viewptz, &viewvert, &viewhor,
                                             &viewscale, &viewdist, &viewaw,  &viewdepth};

// --- folders ------------------------------------------------------------------------------------

static fs::path copies() {
    return fs::path(appdir) / "unsaved";
}

// A process and the time it was started at, which tell it from a later one of the same number.
static std::string startof(const std::string& process) {
    std::ifstream in("/proc/" + process + "/stat");
    std::string text((std::istreambuf_iterator<char>(in)), {});
    const std::size_t name = text.rfind(')');  // it may hold blanks
    if (name == text.npos) return {};
    std::istringstream fields(text.substr(name + 1));
    const int before = 19;  // fields between the name and the time of the start
    std::string field;
    for (int i = 0; i <= before; ++i) fields >> field;
    return field;
}

static fs::path ownfolder() {
    static const std::string process = std::to_string(getpid());
    return copies() / (process + "-" + startof(process));
}

static bool iscopyfolder(const std::string& folder) {
    return folder.find_first_not_of("0123456789-") == folder.npos && folder.find('-') > 0 &&
           folder.find('-') != folder.npos;
}

static bool isalive(const std::string& folder) {
    const std::size_t dash = folder.find('-');
    const std::string start = startof(folder.substr(0, dash));
    return !start.empty() && start == folder.substr(dash + 1);
}

// --- writing ------------------------------------------------------------------------------------

namespace {

class copyout {
  public:
    explicit copyout(const fs::path& path) : file(std::fopen(path.c_str(), "wb"), std::fclose) {}
    void bytes(const void* from, std::size_t count) {
        good = good && std::fwrite(from, 1, count, file.get()) == count;
    }
    void number(std::int64_t n) { bytes(&n, sizeof n); }
    void text(const std::string& t) {
        number(std::int64_t(t.size()));
        bytes(t.data(), t.size());
    }
    template <typename T>
    void cells(const T* from, long count) {
        static const char zeros[block] = {};
        const auto* at = reinterpret_cast<const char*>(from);
        for (std::size_t left = std::size_t(count) * sizeof(T); left > 0;) {
            const std::size_t part = std::min(left, block);
            const char used = std::memcmp(at, zeros, part) != 0;
            bytes(&used, 1);
            if (used) bytes(at, part);
            at += part;
            left -= part;
        }
    }
    void cells(const std::string* from, long count) {
        for (long i = 0; i < count; ++i) text(from[i]);
    }
    bool finish() { return good && std::fflush(file.get()) == 0 && fsync(fileno(file.get())) == 0; }
    explicit operator bool() const { return file != nullptr; }

  private:
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file;
    bool good = true;
};

}  // namespace

static bool isincopy(const modelarray& row) {
    return row.count && (row.role == roles::model || row.role == roles::shown);
}

static void writelists(copyout& out, const modelarray& row) {
    out.text(row.name);
    out.number(row.lists());
    for (long list = 0; list <= row.lists(); ++list)
        withstretch(row, list, [&](auto s) {
            const long count = std::clamp(row.count(list) + 1, 0L, s.rows) * s.width;
            out.number(count);
            out.cells(s.begin, count);
        });
}

static void writeall(copyout& out) {
    out.bytes(mark, sizeof mark);
    out.text(modelname);
    out.cells(modelsize.row().data(), modelsize.upper + 1);
    for (const array1<float>* list : viewnumbers) out.cells(list->row().data(), list->upper + 1);
    for (const modelscalar& row : modelscalars()) {
        if (row.role != roles::model && row.role != roles::shown) continue;
        out.text(row.name);
        std::visit([&](const auto* p) { out.cells(p, 1); }, row.value);
    }
    out.text("");
    for (const modelarray& row : modelarrays())
        if (isincopy(row)) writelists(out, row);
    out.text("");
    out.bytes(endmark, sizeof endmark);
}

static bool copyheld;  // the copy is of a model that was put aside

bool writecopy() {
    if (copyheld) return true;
    std::error_code ec;
    const fs::path folder = ownfolder(), beside = folder / "model.new";
    fs::create_directories(folder, ec);
    copyout out(beside);
    if (!out) return false;
    writeall(out);
    if (out.finish())
        fs::rename(beside, folder / copyname, ec);
    else
        ec = std::make_error_code(std::errc::io_error);
    if (ec) fs::remove(beside, ec);
    return fs::exists(folder / copyname, ec);
}

void dropcopy() {
    if (copyheld) return;
    std::error_code ignored;
    fs::remove_all(ownfolder(), ignored);
}

// --- orphans ------------------------------------------------------------------------------------

namespace {

// Reads what copyout has written; a copy that is cut short throws.
class copyin {
  public:
    explicit copyin(const std::string& path) : file(std::fopen(path.c_str(), "rb")), name(path) {}
    ~copyin() {
        if (file) std::fclose(file);
    }
    copyin(const copyin&) = delete;
    copyin& operator=(const copyin&) = delete;
    [[noreturn]] void fail() const {
        throw runtimeerror{errtype, "The copy of unsaved work can not be read: " + name};
    }
    void bytes(void* to, std::size_t count) {
        if (!file || std::fread(to, 1, count, file) != count) fail();
    }
    std::int64_t number(std::int64_t most) {
        std::int64_t n = 0;
        bytes(&n, sizeof n);
        if (n < 0 || n > most) fail();
        return n;
    }
    std::string text() {
        const std::int64_t longest = std::int64_t(1) << 31;
        std::string t(std::size_t(number(longest)), ' ');
        bytes(t.data(), t.size());
        return t;
    }
    template <typename T>
    void cells(T* to, long count) {
        auto* at = reinterpret_cast<char*>(to);
        for (std::size_t left = std::size_t(count) * sizeof(T); left > 0;) {
            const std::size_t part = std::min(left, block);
            char used = 0;
            bytes(&used, 1);
            if (used)
                bytes(at, part);
            else
                std::memset(at, 0, part);
            at += part;
            left -= part;
        }
    }
    void cells(std::string* to, long count) {
        for (long i = 0; i < count; ++i) to[i] = text();
    }
    void expect(const char* words, std::size_t count) {
        std::string found(count, ' ');
        bytes(found.data(), count);
        if (found != std::string(words, count)) fail();
    }

  private:
    std::FILE* file;
    std::string name;
};

}  // namespace

static void readlists(copyin& in, const modelarray& row) {
    const std::int64_t lists = in.number(lastlist(row));
    for (long list = 0; list <= lists; ++list)
        withstretch(row, list, [&](auto s) {
            const long count = long(in.number(s.rows * s.width));
            in.cells(s.begin, count);
        });
}

static void readall(copyin& in) {
    in.expect(mark, sizeof mark);
    modelname = in.text();
    array1<int> sizes;
    sizes.alloc(modelsize.upper);
    in.cells(sizes.row().data(), sizes.upper + 1);
    for (long i = 1; i <= sizes.upper; ++i) modelsize(i) = std::max(modelsize(i), sizes(i));
    if (!resetmodel()) throw memoryerror();
    for (array1<float>* list : viewnumbers) in.cells(list->row().data(), list->upper + 1);
    for (std::string name = in.text(); !name.empty(); name = in.text()) {
        const modelscalar* const row = findscalar(name);
        if (!row) in.fail();
        std::visit([&](auto* p) { in.cells(p, 1); }, row->value);
    }
    for (std::string name = in.text(); !name.empty(); name = in.text()) {
        const modelarray* const row = findarray(name);
        if (!row || !isincopy(*row)) in.fail();
        readlists(in, *row);
    }
    in.expect(endmark, sizeof endmark);
}

bool readcopy(const orphan& copy) {
    const std::string name = modelname;
    array1<int> sizes;
    sizes.alloc(modelsize.upper);
    std::ranges::copy(modelsize.row(), sizes.row().begin());
    keptmodel before;
    const bool good = guarded(
        [&] {
            copyin in(copy.file);
            readall(in);
        },
        [&](const runtimeerror& e) {
            before.restore();
            modelname = name;
            std::ranges::copy(sizes.row(), modelsize.row().begin());
            theplatform().message(e.what, icons::exclamation);
        });
    if (good) noteunsaved();
    return good;
}

static std::string timeof(const fs::path& file) {
    std::error_code ec;
    const auto changed = fs::last_write_time(file, ec);
    const std::time_t at = std::chrono::system_clock::to_time_t(
        std::chrono::time_point_cast<std::chrono::system_clock::duration>(
            std::chrono::file_clock::to_sys(changed)));
    char text[32] = "";
    if (const std::tm* local = std::localtime(&at))
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", local);
    return text;
}

std::vector<orphan> findorphans() {
    std::vector<orphan> found;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(copies(), ec)) {
        const std::string folder = entry.path().filename().string();
        if (!iscopyfolder(folder) || isalive(folder)) continue;
        const fs::path file = entry.path() / copyname;
        orphan copy;
        copy.file = file.string();
        copy.bytes = fs::file_size(file, ec);
        const bool whole = !ec && guarded(
                                      [&] {
                                          copyin in(copy.file);
                                          in.expect(mark, sizeof mark);
                                          copy.name = in.text();
                                      },
                                      [](const runtimeerror&) {});
        copy.when = whole ? timeof(file) : "";
        if (whole) found.push_back(copy);
        // Killed before its first copy was whole.
        if (!whole && !fs::exists(file, ec)) fs::remove_all(entry.path(), ec);
    }
    std::ranges::sort(found, std::greater<>(), &orphan::when);
    return found;
}

// --- a model put aside --------------------------------------------------------------------------

modelaside::modelaside() : changed(ischanged()), whole(writecopy()) {
    copyheld = true;
}

modelaside::~modelaside() {
    copyheld = false;
    dropcopy();
}

bool modelaside::bringback() {
    orphan copy;
    copy.file = (ownfolder() / copyname).string();
    if (!readcopy(copy)) return false;
    if (!changed) notesaved();
    return true;
}

void droporphan(const orphan& copy) {
    std::error_code ignored;
    fs::remove_all(fs::path(copy.file).parent_path(), ignored);
}
