// SPDX-License-Identifier: GPL-3.0-or-later
// A save that is whole for the model: all files of a set take their places, or none.
//
// The files are written beside their targets and flushed. Then a record of them, BASE.commit~, is
// written and flushed; from there on the save counts. The files are renamed to their places and the
// record is removed. A process that dies before the record is whole has changed nothing; one that
// dies later has its save finished by who opens or saves the model next.
#pragma once

#include <string>
#include <vector>

#include "core/besidefile.h"

// The file set of a model, in the order of writing.
extern const std::vector<std::string> setextensions;

class saveset {
  public:
    explicit saveset(std::string base);  // finishes what was cut. Throws errpathaccess, errdiskfull
    // A file that is whole and flushed, beside its target.
    void add(const std::string& extension, besidefile file);
    void commit();  // throws errdiskfull, errpathaccess: what stood before stands
    bool isempty() const { return files.empty(); }

  private:
    struct member {
        std::string extension;
        besidefile file;
    };
    bool openrecord();
    void writerecord();
    void replacetargets();
    std::string base;
    std::vector<member> files;
    int record = -1;
};

// Finishes or drops a save that was cut, and removes what killed writers have left. Throws
// errpathaccess where a save that counts can not be finished: the files on disk are of two saves.
void finishsave(const std::string& base);

// Removes what killed writers have left in the folder of a model, or of any file that is written:
// of its own files, and of files that belong to no model.
void sweepfolder(const std::string& base);

// --- what the session knows of the files on disk ------------------------------------------------

// Remembers the files as they are now: they are about to be read.
void noteset(const std::string& base);
// Remembers a file that this program has written. A commit does it.
void notewritten(const std::string& base, const std::string& extension);
// Remembers that what a file holds is not in the model, until it is written.
void noteunread(const std::string& base, const std::string& extension);
std::vector<std::string> unreadfiles(const std::string& base);
// Files of the set that another program has changed since they were noted; none for a set that
// never was.
std::vector<std::string> changedfiles(const std::string& base);
