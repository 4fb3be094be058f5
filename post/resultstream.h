// SPDX-License-Identifier: GPL-3.0-or-later
// Result files read through a small window of them, so that those larger than memory can be put
// into tables: tokens, and rows that are summed over load cases as they come.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct streamspot {
    long offset = 0, line = 1;
};

class resultstream {
  public:
    // Throws errfilenotfound, errpathaccess.
    explicit resultstream(const std::string& path, streamspot from = {});

    bool atend();  // nothing but blanks, commas and line ends is left
    // The next value; valid until the next call. Each throws errpastend at the end of the file and
    // errtype for what is not of the kind; the text names file and line.
    std::string_view word();
    double number();
    int whole();
    void skip(long count);
    void passtext();  // a text in quotes, or up to a comma or line end
    streamspot here() const { return {start + long(at), line}; }
    double share() const;  // part of the file that has been read, 0..1
    const std::string& name() const { return path; }
    [[noreturn]] void fail(int errornumber, const std::string& what) const;

  private:
    struct closefile {
        void operator()(std::FILE* f) const { std::fclose(f); }
    };
    void toword();
    bool fill();  // more of the file behind what is left; false where there is none
    std::string path;
    std::unique_ptr<std::FILE, closefile> file;
    std::vector<char> window;
    std::size_t at = 0, last = 0;        // in the window
    long start = 0, line = 1, size = 0;  // start: of the window in the file
};

// Place in X Y Z RX RY RZ of each value of a node's row, by analysis code.
const std::vector<int>& freedomsof(int anadof);

enum class resultkinds { displacements, forces, stresses, linestresses, members, modes };

// The rows of one file: those of each load case or mode are a block.
class resultrows {
  public:
    // What a row speaks of, and its values: those of a node by freedom, of a corner the place and
    // 13 stresses, of a line 3 + 26, of a member nine a station.
    struct row {
        int item = 0;  // node or element; of forces 0 for the total
        std::vector<double> values;
    };
    // Passes over the whole file once. Throws as resultstream, and where the file is not of the
    // model in hand.
    resultrows(const std::string& path, resultkinds kind);

    int blocks() const { return int(begins.size()); }
    int anadof() const { return code; }  // 0..3, of nodes
    // omega^2 of mode m, from 1.
    double modevalue(int m) const { return values[std::size_t(m) - 1]; }

    // From now on the rows are the sums of factor times value over the blocks, the first first.
    void begin(const std::vector<float>& factors);
    bool next(row& sum);
    // Or the rows as they stand in each block, side by side.
    void begin();
    bool next(std::vector<row>& ofblocks);
    double share() const { return streams.empty() ? 0 : streams.front().share(); }

  private:
    void readheader(resultstream& in);
    void skipblock(resultstream& in);
    bool readkey(resultstream& in, int& item);
    template <typename Take>
    bool eachstream(Take take);
    void readvalues(resultstream& in, double factor, bool first, row& sum);
    bool isplace(std::size_t i) const;
    bool bynodes() const;

    std::string path;
    resultkinds kind;
    int code = 3, pernode = 6, node = 0;
    std::vector<streamspot> begins;
    std::vector<double> values;
    std::vector<resultstream> streams;
    std::vector<float> weights;
};
