// SPDX-License-Identifier: GPL-3.0-or-later
// Text files of numbers and quoted texts: the token reader and the buffered writer through which
// every native file goes.
//
// Reading is by tokens: a number ends at a comma, a blank or a line end, an unquoted text at a
// comma or a line end, a quoted text at its quote. How values are spread over lines plays no part.
// Writing is whole or not at all: the text goes to a file beside the target, which takes the
// target's place only when it is complete.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/besidefile.h"

// Whole content of a file. Throws errfilenotfound or errpathaccess.
std::string readwhole(const std::string& path);

// A copy that is there whole or not at all. Throws as readwhole and textout do.
void copywhole(const std::string& source, const std::string& target);

// The text as UTF-8: taken as it is where it is valid UTF-8, else as Windows-1252. A byte order
// mark is dropped.
std::string toutf8(std::string_view bytes);

// Whether something stands under this name. Throws errpathaccess with the system's reason where that
// cannot be told: a folder closed to the user, a name too long.
bool isthere(const std::string& path);

// The path itself when it exists; else a file of the same name whose extension differs in case
// alone; else the path.
std::string findnocase(const std::string& path);

// For terminals and logs: control characters but line ends and tabs as \x1B.
std::string visible(std::string_view text);

// For lists, labels, titles and reports: a name as long as a screen can show. What goes beyond is
// left out and marked "…": laying out a text takes time with its length, at every redraw.
const int longestname = 200;  // characters
std::string shownname(std::string_view utf8, int most = longestname);

struct closefile {
    void operator()(std::FILE* f) const { std::fclose(f); }
};
using filehandle = std::unique_ptr<std::FILE, closefile>;

class textin {
  public:
    enum class inmemory { whole, piece };  // of the file, at a time
    explicit textin(const std::string& path, inmemory held = inmemory::whole);  // as readwhole
    textin(std::string content, std::string name);  // reads a text that is in memory

    // True when only blanks, commas and line ends are left.
    bool atend();
    // True when no other value stands on the line of the last one.
    bool atlineend() const;
    // The next value. Each throws errpastend at the end of the file, errtype for what is not of
    // the kind, erroverflow for what does not fit; the text names file, line and what was found.
    double number();
    float single();
    long whole();  // a number without fraction, |n| < 1E+15
    // A whole number low..high; what names it in the fault, "a degree of freedom".
    int wholewithin(int low, int high, const char* what);
    int count();              // a whole number from 0 up to 2E+09
    int rows();               // a count of rows that follow: no more than the file has room for
    std::string text();       // quoted or not, UTF-8
    std::string quoted();     // a text in double quotes; anything else is errtype
    std::string_view word();  // raw characters up to a comma, blank or line end; until the next
    std::string line();       // what is left of the line, UTF-8; passes its end
    void skip(long n);        // passes over n numbers without storing them
    // A run-time error that names this place of the file.
    [[noreturn]] void fail(int errornumber, const std::string& what) const;
    const std::string& name() const { return filename; }
    double share() const;                       // part of the file that has been read, 0..1
    std::size_t size() const { return bytes; }  // of the whole file

  private:
    void passbyteorder();
    bool more();
    void toword();
    void pasttoken();
    [[noreturn]] void failfound(const std::string& expected);  // tells the next word
    template <typename Real>
    Real real();
    std::string content, filename;
    const char *at, *token, *last;  // next character, start of the last value, end
    std::size_t bytes;
    // Of a file that is read piece by piece: the rest, what of it has been read ahead, and how much
    // stood before the content.
    filehandle rest;
    std::string ahead;
    std::size_t passed = 0, passedlines = 0;
};

class textout {
  public:
    // Throws errpathaccess. Without commit the target is untouched.
    explicit textout(const std::string& target);
    textout(const textout&) = delete;
    textout& operator=(const textout&) = delete;

    // A number that is none or infinite throws erroverflow: no reader would take the file.
    textout& put(float number);
    textout& put(double number);
    textout& put(long number);
    textout& put(int number) { return put(long(number)); }
    textout& quoted(std::string_view text);  // in double quotes, an inner quote doubled
    textout& raw(std::string_view text);
    textout& comma() { return raw(","); }
    void endline() { raw("\r\n"); }
    // Writes one line of numbers separated by commas.
    template <typename First, typename... More>
    void line(First first, More... more) {
        put(first);
        (comma().put(more), ...);
        endline();
    }

    // Everything is on disk beside the target. Throws errdiskfull.
    void close();
    // close, then take the target's place. Throws errdiskfull or errpathaccess.
    void commit();
    // close, and hand the file on to who puts it in its place with others.
    besidefile release();

  private:
    template <typename Real>
    textout& putreal(Real number);
    char* numberroom();
    void flush();
    besidefile beside;
    std::vector<char> buffer;
    std::size_t used = 0;
};
