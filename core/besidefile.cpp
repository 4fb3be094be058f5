// SPDX-License-Identifier: GPL-3.0-or-later
// Files written beside their targets, on the calls of POSIX.
#include "core/besidefile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "core/runtime.h"

namespace fs = std::filesystem;

static const std::string besideending = ".new~";
static const std::size_t marklength = 8;  // hexadecimal digits

std::string linkedtarget(const std::string& path) {
    std::error_code ec;
    if (!fs::is_symlink(path, ec)) return path;
    const fs::path real = fs::weakly_canonical(path, ec);
    return ec ? path : real.string();
}

bool lockfile(int file) {
    // A file system without locks knows no other writer either.
    return flock(file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

void flushfolder(const std::string& folder) {
    const int file =
        open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0) return;
    fsync(file);
    close(file);
}

// --- names --------------------------------------------------------------------------------------

static std::string newmark() {
    static const char digits[] = "0123456789abcdef";
    std::random_device random;
    std::string mark;
    for (std::size_t i = 0; i < marklength; ++i) mark += digits[random() % 16];
    return mark;
}

std::string besidename(const std::string& target, const std::string& mark) {
    return target + "." + mark + besideending;
}

std::string besidemark(const std::string& path) {
    if (!path.ends_with(besideending)) return {};
    const std::string rest = path.substr(0, path.size() - besideending.size());
    if (rest.size() < marklength + 2 || rest[rest.size() - marklength - 1] != '.') return {};
    const std::string mark = rest.substr(rest.size() - marklength);
    return mark.find_first_not_of("0123456789abcdef") == mark.npos ? mark : std::string();
}

static std::string targetof(const std::string& beside) {
    return beside.substr(0, beside.size() - besideending.size() - marklength - 1);
}

// The lock tells a writer at work from one that is gone.
static void removeifleft(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) return;
    struct stat now {};
    if (fstat(file, &now) == 0 && S_ISREG(now.st_mode) && lockfile(file)) unlink(path.c_str());
    close(file);
}

void removeleftovers(const std::string& folder,
                     const std::function<bool(const std::string& target)>& isours) {
    std::error_code ec;
    std::vector<std::string> left;
    for (fs::directory_iterator it(folder.empty() ? "." : folder, ec), end; !ec && it != end;
         it.increment(ec)) {
        const std::string name = it->path().filename().string();
        if (!besidemark(name).empty() && isours(targetof(name)))
            left.push_back(it->path().string());
    }
    for (const std::string& path : left) removeifleft(path);
}

// --- creation -----------------------------------------------------------------------------------

[[noreturn]] static void refuse(const std::string& target, const std::string& reason) {
    throw runtimeerror{errpathaccess, "File can not be written: " + target + " (" + reason + ")"};
}

// The rights of the file that stands count, not those of its folder alone.
static void testrights(const std::string& target) {
    const mode_t anywrite = S_IWUSR | S_IWGRP | S_IWOTH;
    struct stat old {};
    if (stat(target.c_str(), &old) != 0) return;
    if (!S_ISREG(old.st_mode))
        throw runtimeerror{errpathaccess, "Not a file that can be written: " + target};
    if ((old.st_mode & anywrite) == 0 || faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0)
        refuse(target, "the file is write-protected");
}

besidefile::besidefile(const std::string& path) : final(linkedtarget(path)) {
    testrights(final);
    createbeside();
}

void besidefile::createbeside() {
    for (;;) {
        beside = besidename(final, newmark());
        file = open(beside.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        if (file >= 0) {
            struct stat now {};
            // Somebody may have looked for leftovers before the lock stood.
            if (lockfile(file) && fstat(file, &now) == 0 && now.st_nlink > 0) return;
            close(std::exchange(file, -1));
        } else if (errno != EEXIST) {
            break;
        }
    }
    const int reason = errno;
    beside.clear();
    const bool closedfolder = reason == EACCES || reason == EPERM || reason == EROFS;
    std::error_code ec;
    if (!closedfolder || !fs::exists(final, ec)) refuse(final, std::strerror(reason));
    createelsewhere(std::strerror(reason));
}

void besidefile::createelsewhere(const std::string& reason) {
    std::error_code ec;
    std::string name = (fs::temp_directory_path(ec) / "kalvane-XXXXXX").string();
    file = mkostemp(name.data(), O_CLOEXEC);
    if (file < 0) refuse(final, reason);
    unlink(name.c_str());  // it goes with its writer, however that ends
    beside = "/proc/self/fd/" + std::to_string(file);
    inplace = true;
}

besidefile::besidefile(besidefile&& other) noexcept
    : final(std::move(other.final)),
      beside(std::exchange(other.beside, {})),
      file(std::exchange(other.file, -1)),
      inplace(other.inplace),
      failed(other.failed),
      written(other.written),
      reserved(other.reserved),
      disk(std::move(other.disk)) {}

besidefile& besidefile::operator=(besidefile&& other) noexcept {
    std::swap(final, other.final);
    std::swap(beside, other.beside);
    std::swap(file, other.file);
    std::swap(inplace, other.inplace);
    std::swap(failed, other.failed);
    std::swap(written, other.written);
    std::swap(reserved, other.reserved);
    std::swap(disk, other.disk);
    return *this;
}

besidefile::~besidefile() {
    if (!beside.empty() && !inplace) unlink(beside.c_str());
    release();
}

void besidefile::release() {
    beside.clear();
    disk.reset();  // it writes to the file
    if (file >= 0) close(std::exchange(file, -1));
}

void besidefile::leave() {
    release();
}

// --- content ------------------------------------------------------------------------------------

// Room on the disk ahead of what is written: a large file grows in half the time. A disk that has
// too little left, or cannot say so, takes or refuses what is written as ever.
void besidefile::reserve(std::size_t n) {
    const long long least = 1 << 18, most = 1 << 26, end = written + (long long)(n);
    if (end <= std::max(reserved, least)) return;
    const long long ahead = std::clamp(end, least, most);
    const bool done = fallocate(file, FALLOC_FL_KEEP_SIZE, written, (long long)(n) + ahead) == 0;
    reserved = done ? end + ahead : std::numeric_limits<long long>::max();
}

void besidefile::put(const char* data, std::size_t n) {
    if (disk)
        disk->write(data, n);
    else if (!failed && !writeat(file, data, n, written))
        failed = true;
    written += (long long)(n);
}

void besidefile::write(const char* data, std::size_t n) {
    const long long longfile = 4 * (long long)(diskwriter::block);  // what is beyond goes straight
    reserve(n);
    if (written <= longfile && longfile - written < (long long)(n)) {
        const auto before = std::size_t(longfile - written);
        put(data, before);
        data += before;
        n -= before;
        disk = diskwriter::from(file, longfile);
    }
    put(data, n);
}

void besidefile::drain() {
    if (disk && !disk->finish()) failed = true;
    disk.reset();
}

void besidefile::finish() {
    drain();
    if (!failed && reserved > 0 && ftruncate(file, written) != 0) failed = true;
    reserved = 0;
    if (failed)
        throw runtimeerror{errdiskfull, "Disk full or write error: " + final +
                                            " was not written, its former content stands"};
}

void besidefile::startflush() {
    sync_file_range(file, 0, 0, SYNC_FILE_RANGE_WRITE);
}

// The new file has rights and owner of the old one, as far as this user may give them.
static void copyrights(int file, const std::string& target) {
    struct stat old {
    }, now{};
    if (stat(target.c_str(), &old) != 0 || fstat(file, &now) != 0) return;
    const bool sameowner = old.st_uid == now.st_uid && old.st_gid == now.st_gid;
    if (!sameowner && fchown(file, old.st_uid, old.st_gid) != 0) return;
    fchmod(file, old.st_mode & 07777);
}

void besidefile::flush() {
    drain();
    if (!inplace) copyrights(file, final);
    if (fsync(file) != 0 && errno != EINVAL && errno != ENOTSUP) failed = true;
    finish();
}

// Reserves the room first: what fails after that has no common cause.
void besidefile::overwrite() {
    const int old = open(final.c_str(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC);
    if (old < 0) refuse(final, std::strerror(errno));
    const off_t size = lseek(file, 0, SEEK_END);
    lseek(file, 0, SEEK_SET);
    std::vector<char> block(std::size_t(1) << 20);
    if (size > 0 && posix_fallocate(old, 0, size) == ENOSPC) failed = true;
    off_t at = 0;
    for (ssize_t n; !failed && (n = read(file, block.data(), block.size())) > 0; at += n)
        failed = !writeat(old, block.data(), std::size_t(n), at);
    if (!failed && (ftruncate(old, size) != 0 || fsync(old) != 0)) failed = true;
    close(old);
    finish();
}

void besidefile::replacetarget() {
    finish();
    if (inplace) {
        overwrite();
    } else {
        copyrights(file, final);
        if (rename(beside.c_str(), final.c_str()) != 0)
            throw runtimeerror{errpathaccess, "File can not be replaced: " + final + " (" +
                                                  std::strerror(errno) + ")"};
    }
    release();
}
