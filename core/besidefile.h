// SPDX-License-Identifier: GPL-3.0-or-later
// A file written beside its target, which takes the target's place when it is whole: at any moment
// the target is the old file or the new one, never half of one. Every writer goes through it.
//
// The file beside has a name of its own (TARGET.1a2b3c4d.new~), is created by this process and
// nobody else, is never opened through a link, and stays locked as long as its writer lives. One
// that is not locked is what a killed writer has left.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "core/diskwriter.h"

class besidefile {
  public:
    // Throws errpathaccess where the target can not be replaced: it is no plain file, it is
    // write-protected, or the folder takes no file and the target can not be written in place.
    explicit besidefile(const std::string& target);
    ~besidefile();  // what has not taken its place is removed
    besidefile(besidefile&& other) noexcept;
    besidefile& operator=(besidefile&& other) noexcept;

    const std::string& target() const { return final; }  // behind links
    const std::string& path() const { return beside; }   // for a writer that opens it by its name
    // The folder takes no new file: the text waits elsewhere, and replacetarget overwrites the
    // target.
    bool isinplace() const { return inplace; }

    void write(const char* data, std::size_t n);
    void startflush();  // the disk begins to write what it has; of several files, before any flush
    void flush();       // what was written is on the disk itself. Throws errdiskfull
    void finish();      // all writes went well. Throws errdiskfull
    void replacetarget();  // throws errpathaccess, errdiskfull
    void leave();  // the file beside stays where it is, for a later opening to put in its place

  private:
    void createbeside();
    void createelsewhere(const std::string& reason);
    void overwrite();
    void release();
    void reserve(std::size_t n);
    void put(const char* data, std::size_t n);
    void drain();
    std::string final, beside;
    int file = -1;
    bool inplace = false, failed = false;
    long long written = 0, reserved = 0;  // bytes; reserved is 0 while no room was asked for
    std::unique_ptr<diskwriter> disk;     // of the part that is long
};

// A link is followed, so that the file it points to is the one replaced.
std::string linkedtarget(const std::string& path);

// The eight characters between TARGET and .new~ in the name of a file beside; "" for other names.
std::string besidemark(const std::string& path);
std::string besidename(const std::string& target, const std::string& mark);

// Removes what killed writers have left in a folder beside those of its files, by their names
// there, that isours takes.
void removeleftovers(const std::string& folder,
                     const std::function<bool(const std::string& target)>& isours);

// Makes new, renamed and removed names of a folder last through a power cut.
void flushfolder(const std::string& folder);

// Locks an open file as its writer; false while another process holds it. Ends with the descriptor.
bool lockfile(int file);
