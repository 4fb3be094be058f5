// SPDX-License-Identifier: GPL-3.0-or-later
// The room exchange: models from and to other programs. A reader fills `imported` and its report;
// only the gate lets that into the model.
//
// Lines, words, fields and numbers of foreign texts. Line ends are LF, CR LF or CR, the last may be
// missing; a byte order mark is dropped; tabs are blanks. Everything handed out is a view into the
// one buffer and lives as long as it.
#pragma once

#include <string>
#include <string_view>

#include "core/numtext.h"
#include "core/runtime.h"
#include "core/trimmed.h"

class textlines {
  public:
    explicit textlines(const std::string& path);       // throws as readwhole
    textlines(std::string content, std::string name);  // reads a text that is in memory

    // The next line without its end and without blanks behind it; false at the end of the text.
    bool next(std::string_view& line);
    long number() const { return count; }            // of the last line, from 1; 0 before the first
    void stepback();                                 // the last line comes again, once
    const char* start() const { return linestart; }  // of the last line
    // Goes back to where a line started that was read before, with its number: it is the next.
    void seek(const char* linestart, long number);
    const std::string& name() const { return filename; }
    double share() const;  // part of the text that has been read, 0..1
    // What follows the last line, and passing over some of it: blocks of bytes between lines.
    std::string_view rest() const { return {at, std::size_t(last - at)}; }
    void pass(std::size_t bytes);
    void countlines(long passed);  // lines before the place where reading goes on
    // Throws errtype with file, the last line's number and the text.
    [[noreturn]] void fail(const std::string& what) const;
    [[noreturn]] void failat(long line, const std::string& what) const;

  private:
    std::string content, filename;
    const char *at, *last, *linestart, *feed;  // feed: the next line feed, where it is known
    long count = 0;
};

// What follows the last line as words and numbers, for formats in which line ends mean nothing. It
// costs little more than the numbers themselves; the line is counted when it is asked for.
class wordstream {
  public:
    explicit wordstream(textlines& lines);
    bool atend();                       // nothing but blanks and line ends is left
    bool word(std::string_view& word);  // false at the end
    // Each throws with file and line: what was found in the place of `what`, or the end.
    double real(const char* what);
    long whole(const char* what);
    long line() const;  // of the last word
    [[noreturn]] void fail(const std::string& text) const { in.failat(line(), text); }
    double share() const { return double(at - first) / double(last - first + 1); }
    // Line reading goes on behind the last word.
    void giveback();

  private:
    void toword();
    [[noreturn]] void failword(const char* what);
    textlines& in;
    const char *first, *at, *token, *last;
    long firstline;
};

// Takes the next word off the front of a line; false where none is left.
bool nextword(std::string_view& line, std::string_view& word);
// Takes what stands before the next separator, trimmed; false once the line is used up. "a,,b" has
// three fields, the second is empty; a separator at the end is followed by no field.
bool nextfield(std::string_view& line, std::string_view& field, char separator = ',');

// The whole text as a number; a leading plus and exponents with D are taken. False leaves it as it
// was.
bool readreal(std::string_view text, double& number);
bool readwholenumber(std::string_view text, long& number);

std::string uppercase(std::string_view text);           // of ASCII letters
bool sameword(std::string_view a, std::string_view b);  // whatever the case of ASCII letters
// A text of a foreign file for messages: quoted, of bounded length, as UTF-8.
std::string shown(std::string_view text);
