// SPDX-License-Identifier: GPL-3.0-or-later
// Blocks of the checkpoint file.
#include "solver/results/checkpoint.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <utility>

#include "solver/base/refuse.h"
#include "solver/processes/ranks.h"

static const char opening[] = "feiflu checkpoint ";
// Raised when a part holds other numbers: a file from before would be read as what it is not.
static const char layout[] = "2 ";

// --- bytes --------------------------------------------------------------------------------------

namespace {
// One order of a block's parts serves writing and reading.
class packed {
  public:
    packed() = default;
    explicit packed(std::string content) : bytes(std::move(content)), reads(true) {}
    const std::string& content() const { return bytes; }

    void number(std::int64_t& value) { raw(&value, sizeof value); }
    void numbers(std::vector<double>& values) {
        resize(values);
        raw(values.data(), values.size() * sizeof(double));
    }
    void numbers(std::vector<vec6>& values) {
        resize(values);
        for (vec6& one : values) raw(one.data(), 6 * sizeof(double));
    }
    void text(std::string& words) {
        resize(words);
        raw(words.data(), words.size());
    }
    void told(runlog::told& t) {
        text(t.text);
        resize(t.warnings);
        t.cases.resize(t.warnings.size());
        for (std::size_t i = 0; i < t.warnings.size(); ++i) {
            text(t.warnings[i]);
            raw(&t.cases[i], sizeof t.cases[i]);
        }
    }
    void part(casepart& p) {
        std::int64_t cases = p.u.cases;
        number(cases);
        p.u.cases = int(cases);
        for (std::vector<double>* const v : {&p.u.u, &p.u.rest, &p.residual, &p.reactions.force})
            numbers(*v);
        numbers(p.reactions.load);
        numbers(p.reactions.reaction);
        numbers(p.reactions.least);
    }

  private:
    template <typename List>
    void resize(List& list) {
        auto count = std::int64_t(list.size());
        number(count);
        if (reads) list.resize(std::size_t(count));
    }
    void raw(void* data, std::size_t count) {
        if (!reads)
            bytes.append(static_cast<const char*>(data), count);
        else if (count > 0)
            std::memcpy(data, bytes.data() + std::exchange(at, at + count), count);
    }
    std::string bytes;
    std::size_t at = 0;
    bool reads = false;
};
}  // namespace

// Fowler, Noll and Vo's hash 1a, of words of 64 bits.
static std::uint64_t hashof(const std::string& bytes) {
    std::uint64_t hash = 14695981039346656037u, word = 0;
    for (std::size_t at = 0; at < bytes.size(); at += sizeof word) {
        word = 0;
        std::memcpy(&word, bytes.data() + at, std::min(sizeof word, bytes.size() - at));
        hash = (hash ^ word) * 1099511628211u;
    }
    return hash;
}

static bool readparcel(std::ifstream& file, std::string& bytes, std::int64_t left) {
    std::int64_t size = 0;
    std::uint64_t hash = 0;
    file.read(reinterpret_cast<char*>(&size), sizeof size);
    if (!file || size < 0 || size > left) return false;
    bytes.resize(std::size_t(size));
    file.read(bytes.data(), size);
    file.read(reinterpret_cast<char*>(&hash), sizeof hash);
    return bool(file) && hash == hashof(bytes);
}

// --- file ---------------------------------------------------------------------------------------

checkpoint::checkpoint(std::string file, const std::string& name) : path(std::move(file)) {
    if (name.empty()) return;
    head = std::string(opening) + layout + name + "\n";
    places.assign(1, std::int64_t(head.size()));
    if (allranks().first()) scan();
    double count = blocks;
    allranks().takefirst(&count, 1);
    blocks = int(count);
}

bool checkpoint::ours() const {
    char begin[sizeof opening] = {};
    std::ifstream(path, std::ios::binary).read(begin, sizeof opening - 1);
    return std::string(begin) == opening;
}

void checkpoint::scan() {
    std::error_code ec;
    const auto size = std::int64_t(std::filesystem::file_size(path, ec));
    writes = bool(ec) || ours();
    if (ec) return;
    std::ifstream file(path, std::ios::binary);
    std::string bytes(head.size(), 0);
    file.read(bytes.data(), std::streamsize(bytes.size()));
    if (!file || bytes != head) return;
    for (int parcels = 0; readparcel(file, bytes, size);) {
        if (++parcels % allranks().count() != 0) continue;
        places.push_back(std::int64_t(file.tellg()));
        ++blocks;
    }
}

// A block has a parcel of each process.
casepart checkpoint::take(int i, runlog& log) {
    std::ifstream file;
    bool whole = true;
    if (allranks().first()) {
        file.open(path, std::ios::binary);
        file.seekg(places[std::size_t(i)]);
    }
    std::string bytes = allranks().handout([&] {
        std::string parcel;
        whole = whole && readparcel(file, parcel, places.back());
        return whole ? parcel : "";
    });
    together([&] {
        if (!whole) refuse(path + " has changed while it was read; start the analysis again");
    });
    casepart part;
    runlog::told words;
    packed block(std::move(bytes));
    block.part(part);
    block.told(words);
    log.tell(words);
    return part;
}

// False where the disc does not take it. What a crash of the machine keeps from the disc is known
// by its checksum, so that nobody waits for it.
static bool append(const std::string& path, std::int64_t place, const std::string& bytes) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0644);
    if (file < 0) return false;
    bool whole = ftruncate(file, place) == 0;
    for (std::size_t at = 0; whole && at < bytes.size();) {
        const ssize_t n = pwrite(file, bytes.data() + at, bytes.size() - at, place + off_t(at));
        whole = n > 0;
        if (whole) at += std::size_t(n);
    }
    return close(file) == 0 && whole;
}

void checkpoint::keep(casepart& part, const runlog::place& from, runlog& log) {
    if (head.empty()) return;
    const bool opens = places.size() == 1;
    std::int64_t end = opens ? 0 : places.back();
    const auto add = [&](const std::string& bytes) {
        writes = writes && append(path, end, bytes);
        end += std::int64_t(bytes.size());
    };
    if (allranks().first() && opens) add(head);
    packed block;
    runlog::told words = log.since(from);
    block.part(part);
    block.told(words);
    std::string mine = block.content();
    allranks().handin(mine, [&](const std::string& content) {
        const auto size = std::int64_t(content.size());
        const std::uint64_t hash = hashof(content);
        add({reinterpret_cast<const char*>(&size), sizeof size});
        add(content);
        add({reinterpret_cast<const char*>(&hash), sizeof hash});
    });
    allranks().settle();
    places.push_back(end);
    double taken = writes || !allranks().first();
    allranks().takefirst(&taken, 1);
    if (taken != 0) return;
    log.warn("No checkpoint is kept in " + path +
             ": it is another program's file, or the disc is full or takes no file there");
    head.clear();
}

void checkpoint::drop() {
    std::error_code ec;
    if (allranks().first() && ours()) std::filesystem::remove(path, ec);
}
