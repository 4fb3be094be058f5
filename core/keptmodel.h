// SPDX-License-Identifier: GPL-3.0-or-later
// The model kept aside while its arrays are read or allocated anew.
#pragma once

#include <memory>

// Takes the whole model aside and brings it back: what stood before a failed read is not lost.
// Colours and views come back as they were too. While the model is aside its arrays are empty;
// allocmodel fills them.
class keptmodel {
  public:
    keptmodel();
    ~keptmodel();
    keptmodel(const keptmodel&) = delete;
    keptmodel& operator=(const keptmodel&) = delete;
    void restore();
    // Brings it back into arrays of other sizes, allocated since, as far as they reach.
    void restoreinto();

  private:
    struct store;
    std::unique_ptr<store> kept;
};

// What the model's files do not hold: names of nodes and elements, end releases, colours, depth
// slab and elements shown of the views, marks for post-processing, the current group, whether the
// comment shows. Taken aside before a model is
// re-read from its own files, and put back when the re-read model has the same size.
class keptbesidefiles {
  public:
    keptbesidefiles();
    ~keptbesidefiles();
    keptbesidefiles(const keptbesidefiles&) = delete;
    keptbesidefiles& operator=(const keptbesidefiles&) = delete;
    void restore();

  private:
    struct store;
    std::unique_ptr<store> kept;
};
