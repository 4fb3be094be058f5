// SPDX-License-Identifier: GPL-3.0-or-later
// Tokens through a window; blocks found in one pass, then read side by side.
#include "post/resultstream.h"

#include <cmath>
#include <cstring>
#include <filesystem>

#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/runtime.h"
#include "core/textfile.h"
#include "post/stressfile.h"

static const std::size_t windowsize = 1 << 16;
static const std::size_t longesttoken = 256;

// --- tokens -------------------------------------------------------------------------------------

resultstream::resultstream(const std::string& p, streamspot from)
    : path(p), window(windowsize), start(from.offset), line(from.line) {
    std::error_code ec;
    if (!std::filesystem::exists(path, ec))
        throw runtimeerror{errfilenotfound, "File not found: " + path};
    file.reset(std::fopen(path.c_str(), "rb"));
    const auto bytes = std::filesystem::file_size(path, ec);
    if (!file || ec || std::fseek(file.get(), start, SEEK_SET) != 0)
        throw runtimeerror{errpathaccess, "File can not be opened for reading: " + path};
    size = long(bytes);
}

bool resultstream::fill() {
    std::memmove(window.data(), window.data() + at, last - at);
    start += long(at);
    last -= at;
    at = 0;
    const std::size_t got = std::fread(window.data() + last, 1, window.size() - last, file.get());
    last += got;
    return got > 0;
}

static bool isgap(char c) {
    return c == ' ' || c == ',' || (c >= '\t' && c <= '\r');
}

void resultstream::toword() {
    for (;;) {
        while (at < last && isgap(window[at])) line += window[at++] == '\n';
        if (at + longesttoken < last) return;  // the usual case
        if (at < last && std::feof(file.get())) return;
        if (!fill()) return;
    }
}

bool resultstream::atend() {
    toword();
    return at == last;
}

std::string_view resultstream::word() {
    toword();
    if (at == last) fail(errpastend, "the file ends in the middle of its values");
    const std::size_t begin = at;
    while (at < last && !isgap(window[at])) ++at;
    return {window.data() + begin, at - begin};
}

double resultstream::number() {
    const std::string_view text = word();
    double value = 0;
    const char* end = nullptr;
    const char* const behind = text.data() + text.size();
    if (scannumber(text.data(), behind, value, end) != numberfault::none || end != behind)
        fail(errtype, "a number was expected, found \"" + shownname(toutf8(text), 40) + "\"");
    return value;
}

int resultstream::whole() {
    const double value = number(), most = 2e9;
    if (value != std::floor(value) || !(std::fabs(value) <= most))
        fail(errtype, "a whole number was expected, found " + numbertext(value));
    return int(value);
}

void resultstream::skip(long count) {
    while (count-- > 0) word();
}

void resultstream::passtext() {
    if (atend()) fail(errpastend, "the file ends where the name of a load case was expected");
    const bool isquoted = window[at] == '"';
    bool inside = isquoted;  // a quote inside stands twice: it ends the text and goes on
    at += isquoted;
    for (; at < last || fill(); ++at) {
        const char c = window[at];
        if (c == '"' && isquoted)
            inside = !inside;
        else if (!inside && (isquoted || c == ',' || c == '\n'))
            return;
        line += c == '\n';
    }
}

double resultstream::share() const {
    return size > 0 ? double(start + long(at)) / double(size) : 1;
}

void resultstream::fail(int errornumber, const std::string& what) const {
    throw runtimeerror{errornumber, path + ", line " + numbertext(line) + ": " + what};
}

// --- rows ---------------------------------------------------------------------------------------

static bool isend(std::string_view word) {
    return word == "END" || word == "\"END\"";
}

const std::vector<int>& freedomsof(int anadof) {
    static const std::vector<int> lists[] = {{0, 1, 2}, {0, 1}, {0, 1, 5}, {0, 1, 2, 3, 4, 5}};
    return lists[std::size_t(anadof)];
}

bool resultrows::bynodes() const {
    return kind == resultkinds::displacements || kind == resultkinds::forces ||
           kind == resultkinds::modes;
}

resultrows::resultrows(const std::string& p, resultkinds k) : path(findnocase(p)), kind(k) {
    resultstream in(path);
    if (bynodes()) readheader(in);
    while (!in.atend()) {
        if (!theplatform().progress("Looking through " + path, in.share()))
            throw runtimeerror{errstopped, "The reading of " + path + " was cancelled"};
        if (kind == resultkinds::modes) values.push_back(in.number());
        begins.push_back(in.here());
        skipblock(in);
    }
    if (begins.empty()) in.fail(errpastend, "the file holds no results");
}

void resultrows::readheader(resultstream& in) {
    static const int values[] = {3, 2, 3, 6};
    if (kind != resultkinds::modes)
        if (const int count = in.whole(); count != nnodes())
            in.fail(errtype, "the results are of a model with " + numbertext(count) +
                                 " nodes, the model in hand has " + numbertext(nnodes()));
    code = in.whole();
    if (code < 0 || code > 3)
        in.fail(errtype, "an analysis code of 0 to 3 was expected, found " + numbertext(code));
    pernode = values[code];
    if (kind == resultkinds::modes) in.number();
}

void resultrows::skipblock(resultstream& in) {
    if (!bynodes()) {
        while (!isend(in.word())) continue;
        return;
    }
    const bool areforces = kind == resultkinds::forces;
    in.skip(long(nnodes() + areforces) * (pernode + areforces));
    if (kind != resultkinds::modes) in.passtext();
}

void resultrows::begin(const std::vector<float>& factors) {
    streams.clear();
    weights.clear();
    node = 0;
    for (std::size_t b = 0; b < begins.size(); ++b) {
        const float factor = b < factors.size() ? factors[b] : 0;
        // Rows of zeros are rows too: one block tells which there are.
        if (factor == 0 && !(streams.empty() && b + 1 == begins.size())) continue;
        streams.emplace_back(path, begins[b]);
        weights.push_back(factor);
    }
}

// The node or element of the next row; false behind the last.
bool resultrows::readkey(resultstream& in, int& item) {
    if (bynodes()) {
        const bool areforces = kind == resultkinds::forces;
        if (node > nnodes() + areforces) return false;
        if (areforces) in.word();
        item = node <= nnodes() ? node : 0;
        return true;
    }
    const std::string_view word = in.word();
    if (isend(word)) return false;
    double number = 0;
    if (!readnumber(word, number) || number != std::floor(number))
        in.fail(errtype, "an element number or END was expected");
    if (!(number >= 1 && number <= nelems()))
        in.fail(errsubscript, "the row is of element " + numbertext(number) +
                                  ", the model in hand has elements 1 to " + numbertext(nelems()));
    item = int(number);
    return true;
}

// Values that say where, and are no results.
bool resultrows::isplace(std::size_t i) const {
    if (kind == resultkinds::members) return i % 9 == 0;
    return !bynodes() && i < 3;
}

void resultrows::readvalues(resultstream& in, double factor, bool first, row& sum) {
    std::size_t count = std::size_t(pernode);
    if (kind == resultkinds::stresses) count = 3 + stressvalues;
    if (kind == resultkinds::linestresses) count = 3 + 2 * stressvalues;
    if (kind == resultkinds::members) {
        const int stations = in.whole(), most = 1000;
        if (stations < 0 || stations > most) in.fail(errtype, "too many places along a member");
        count = std::size_t(stations) * 9;
    }
    if (!first && count != sum.values.size()) in.fail(errtype, "the load cases differ in places");
    if (first) sum.values.assign(count, 0);
    for (std::size_t i = 0; i < count; ++i) {
        const double value = in.number();
        if (!isplace(i))
            sum.values[i] += factor * value;
        else if (first)
            sum.values[i] = value;
    }
}

// Runs take(stream) where each of them has come to a row of the same item.
template <typename Take>
bool resultrows::eachstream(Take take) {
    if (bynodes()) ++node;
    bool any = false;
    int former = 0;
    for (std::size_t s = 0; s < streams.size(); ++s) {
        int item = 0;
        const bool more = readkey(streams[s], item);
        if (s > 0 && (more != any || (more && item != former)))
            streams[s].fail(errtype, "the load cases have rows of different elements");
        any = more;
        former = item;
        if (more) take(s, item);
    }
    return any;
}

bool resultrows::next(row& sum) {
    return eachstream([&](std::size_t s, int item) {
        sum.item = item;
        readvalues(streams[s], double(weights[s]), s == 0, sum);
    });
}

void resultrows::begin() {
    streams.clear();
    node = 0;
    for (const streamspot& from : begins) streams.emplace_back(path, from);
}

bool resultrows::next(std::vector<row>& ofblocks) {
    ofblocks.resize(streams.size());
    return eachstream([&](std::size_t s, int item) {
        ofblocks[s].item = item;
        readvalues(streams[s], 1, true, ofblocks[s]);
    });
}
