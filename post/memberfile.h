// SPDX-License-Identifier: GPL-3.0-or-later
// The file of forces along members, BASE.MEM, read by the element: one pass finds where the records
// begin, and a record is read when it is asked for. A large model's file is larger than the memory.
#pragma once

#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <vector>

const int memberstations = 21;  // at even distances from node 1 to node 2
// N, Vy, Vz, T, My, Mz as they act on the face that looks along +e1, in local axes; deflections v
// along e2 and w along e3.
enum memberquantity { memN, memVy, memVz, memT, memMy, memMz, memv, memw, memberquantities };
struct quantityrow {
    const char *label, *caption, *unit;
};
extern const quantityrow quantityrows[memberquantities];

struct memberline {
    float value[memberquantities][memberstations];
};

// The ends, and between them where a value is largest or smallest.
std::vector<int> tellingstations(const memberline& m);

class memberfile {
  public:
    // Finds the records; elements are 1..elements. Throws errfilenotfound, errtype.
    memberfile(const std::string& path, int elements);
    int cases() const { return int(places.size()); }
    bool holds(int e) const;
    // Sum over load cases of factor times value; a case without a factor counts nothing. Throws
    // errtype where the record is damaged.
    memberline sum(int e, std::span<const float> factors);
    // The cases' own: one[lc - 1].
    void read(int e, std::vector<memberline>& one);

  private:
    struct closing {
        void operator()(std::FILE* f) const { std::fclose(f); }
    };
    void scan(int elements);
    void readrecord(int e, int lc, double factor, double (*sum)[memberstations]);
    [[noreturn]] void fail(int e, int lc) const;

    std::string name;
    std::unique_ptr<std::FILE, closing> file;
    std::vector<std::vector<long long>> places;  // a case: begin of an element's record, -1 none
    std::string line;
};
