// SPDX-License-Identifier: GPL-3.0-or-later
// The commit of a whole set. State: what the session knows of the files of its models.
#include "files/saveset.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <thread>
#include <utility>

#include "core/runtime.h"
#include "core/textfile.h"

namespace fs = std::filesystem;

const std::vector<std::string> setextensions = {".tek", ".rot", ".gra", ".vpl", ".knk", ".mlt",
                                                ".lcd", ".lco", ".ell", ".pat", ".txt", ".kal"};

static const char recordhead[] = "kalvane save 1", recordend[] = "whole";

static std::string recordname(const std::string& base) {
    return base + ".commit~";
}

static std::string folderof(const std::string& path) {
    return fs::path(path).parent_path().string();
}

// --- a save that was cut ------------------------------------------------------------------------

namespace {
struct filemark {
    std::string extension, mark;
};
// A record with its lock; -1 where there is none.
class openedrecord {
  public:
    explicit openedrecord(const std::string& path)
        : file(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC)) {}
    ~openedrecord() {
        if (file >= 0) close(file);
    }
    openedrecord(const openedrecord&) = delete;
    openedrecord& operator=(const openedrecord&) = delete;
    bool stands() const { return file >= 0; }
    bool lock() const { return lockfile(file); }

  private:
    const int file;
};
}  // namespace

// The files that a record names; none where it is not whole.
static std::vector<filemark> readrecord(const std::string& path) {
    std::istringstream text(readwhole(path));
    std::string line;
    std::vector<filemark> marks;
    if (!std::getline(text, line) || line != recordhead) return {};
    while (std::getline(text, line)) {
        if (line == recordend) return marks;
        std::istringstream words(line);
        filemark m;
        words >> m.extension >> m.mark;
        // Nothing but files of the set: the record is a file like any other on disk.
        const bool known = std::ranges::find(setextensions, m.extension) != setextensions.end();
        if (!known || besidemark(besidename(m.extension, m.mark)).empty()) return {};
        marks.push_back(m);
    }
    return {};
}

static void finishrecord(const std::string& base) {
    std::set<std::string> folders = {folderof(base)};
    for (const filemark& m : readrecord(recordname(base))) {
        const std::string target = linkedtarget(base + m.extension);
        const std::string beside = besidename(target, m.mark);
        folders.insert(folderof(target));
        std::error_code ec;
        if (!fs::exists(beside, ec)) continue;  // it has its place already
        if (rename(beside.c_str(), target.c_str()) != 0)
            throw runtimeerror{errpathaccess,
                               "The last save of " + base +
                                   " was cut short and can not be finished: " + target + " (" +
                                   std::strerror(errno) + "). Make room, or give the rights to " +
                                   "write in that folder, and open the model again"};
    }
    for (const std::string& folder : folders) flushfolder(folder);
    unlink(recordname(base).c_str());
}

void finishsave(const std::string& base) {
    const auto step = std::chrono::milliseconds(20);
    const int patience = 250;  // steps that a save of another process is waited for
    for (int i = 0;; ++i) {
        const openedrecord record(recordname(base));
        if (!record.stands()) break;
        if (record.lock()) {
            finishrecord(base);
            break;
        }
        if (i == patience)
            throw runtimeerror{errpathaccess, "Another program is saving " + base +
                                                  " at this moment; try again later"};
        std::this_thread::sleep_for(step);
    }
    sweepfolder(base);
}

// The files of another model's save are left to the opening of that model, which may finish it.
void sweepfolder(const std::string& base) {
    const std::string own = fs::path(base).filename().string();
    removeleftovers(folderof(base), [&own](const std::string& target) {
        const fs::path name = target;
        return name.stem() == own ||
               std::ranges::find(setextensions, name.extension().string()) == setextensions.end();
    });
}

// --- what the session knows of the files on disk ------------------------------------------------

namespace {
struct filestate {
    ino_t number;
    off_t size;
    long long changed;  // nanoseconds
    bool operator==(const filestate&) const = default;
};
struct notedset {
    std::map<std::string, filestate> files;
    std::map<std::string, std::string> unread;  // path by extension
};
}  // namespace

static std::map<std::string, notedset> noted;  // by base

static std::optional<filestate> stateof(const std::string& path) {
    const long long second = 1000000000;
    struct stat now {};
    if (stat(path.c_str(), &now) != 0 || !S_ISREG(now.st_mode)) return {};
    return filestate{now.st_ino, now.st_size, now.st_mtim.tv_sec * second + now.st_mtim.tv_nsec};
}

static std::map<std::string, filestate> filesof(const std::string& base) {
    std::map<std::string, filestate> files;
    for (const std::string& extension : setextensions) {
        const std::string path = findnocase(base + extension);
        if (const auto state = stateof(path)) files[path] = *state;
    }
    return files;
}

void noteset(const std::string& base) {
    noted[base] = {filesof(base), {}};
}

void notewritten(const std::string& base, const std::string& extension) {
    notedset& set = noted[base];
    set.unread.erase(extension);
    if (const auto state = stateof(base + extension)) set.files[base + extension] = *state;
}

void noteunread(const std::string& base, const std::string& extension) {
    noted[base].unread[extension] = findnocase(base + extension);
}

std::vector<std::string> unreadfiles(const std::string& base) {
    std::vector<std::string> paths;
    if (const auto at = noted.find(base); at != noted.end())
        for (const auto& [extension, path] : at->second.unread) paths.push_back(path);
    return paths;
}

std::vector<std::string> changedfiles(const std::string& base) {
    std::vector<std::string> changed;
    const auto at = noted.find(base);
    if (at == noted.end()) return changed;
    for (const auto& [path, state] : filesof(base)) {
        const auto before = at->second.files.find(path);
        if (before == at->second.files.end() || before->second != state) changed.push_back(path);
    }
    return changed;
}

// --- the commit ---------------------------------------------------------------------------------

saveset::saveset(std::string name) : base(std::move(name)) {
    finishsave(base);
}

void saveset::add(const std::string& extension, besidefile file) {
    files.push_back({extension, std::move(file)});
}

// False where the folder takes no file: then every file of the set is written in place.
bool saveset::openrecord() {
    const std::string path = recordname(base);
    for (;;) {
        record = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        if (record >= 0) {
            struct stat now {};
            if (lockfile(record) && fstat(record, &now) == 0 && now.st_nlink > 0) return true;
            close(std::exchange(record, -1));  // taken for a left one before the lock stood
            continue;
        }
        if (errno == EACCES || errno == EPERM || errno == EROFS) return false;
        if (errno != EEXIST)
            throw runtimeerror{errdiskfull, "File can not be written: " + path + " (" +
                                                std::strerror(errno) + ")"};
        finishsave(base);
    }
}

void saveset::writerecord() {
    std::string text = std::string(recordhead) + "\n";
    for (const member& m : files)
        if (!m.file.isinplace()) text += m.extension + " " + besidemark(m.file.path()) + "\n";
    text += std::string(recordend) + "\n";
    const bool whole =
        write(record, text.data(), text.size()) == ssize_t(text.size()) && fsync(record) == 0;
    if (whole) return flushfolder(folderof(base));
    unlink(recordname(base).c_str());
    close(std::exchange(record, -1));
    throw runtimeerror{errdiskfull, "Disk full or write error: the files of the last save stand"};
}

// From here on the save counts: what can not be renamed now stays for the next opening.
void saveset::replacetargets() {
    try {
        for (member& m : files) m.file.replacetarget();
    } catch (const runtimeerror&) {
        for (member& m : files)
            if (!m.file.isinplace()) m.file.leave();
        if (record >= 0) close(std::exchange(record, -1));
        throw;
    }
}

void saveset::commit() {
    std::set<std::string> folders = {folderof(base)};
    for (const member& m : files) folders.insert(folderof(m.file.target()));
    for (const std::string& folder : folders) flushfolder(folder);
    if (openrecord()) writerecord();
    replacetargets();
    for (const std::string& folder : folders) flushfolder(folder);
    for (const member& m : files) notewritten(base, m.extension);
    if (record < 0) return;
    unlink(recordname(base).c_str());
    close(std::exchange(record, -1));
}
