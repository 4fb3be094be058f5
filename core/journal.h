// SPDX-License-Identifier: GPL-3.0-or-later
// The journal of the model's changes: every step of the user can be taken back.
//
// A `step` stands around each door through which a user changes anything. At the end of the
// outermost one the arrays of the model are compared, in pages of the stretch in use, with the
// state kept from the step before; the former pages are what a step back puts in. Tools change
// arrays and know nothing of this. State: the kept pages and the two lists of steps.
#pragma once

#include <functional>
#include <string>
#include <vector>

// How far a step can reach: a click that selects need not search the model.
enum class reaches { nothing, texts, model };

class step {
  public:
    // Steps within a step belong to it; the first name that is given is its name.
    explicit step(const std::string& name, reaches reach = reaches::model);
    ~step();
    step(const step&) = delete;
    step& operator=(const step&) = delete;
};
// A name for the step under way, for want of a better one.
void suggestname(const std::string& name);
// The door that is open has changed no model: nothing is compared at its end.
void nothingchanged();
// The step under way ends here under its name and goes on as another: a script that is played from
// a menu, line by line.
void cutstep();

// Takes `count` steps back or forward; false, with nothing changed, where there are none or the
// declared sizes have become too small for one. Not to be called while a tool works.
bool stepback(int count = 1);
bool stepforward(int count = 1);
// Names of the steps, the next to be taken first.
std::vector<std::string> stepsback(std::size_t most);
std::vector<std::string> stepsforward(std::size_t most);

// The model in hand is a new beginning: after New and Open.
void startjournal();
// Its results have just been computed.
void noteanalysis();
// The model was just opened, and the results beside it are of another one.
void noteoldresults();
// The model differs from the one that its results were computed from.
bool isresultstale();
// Told wherever results are shown once they are stale.
extern const char* const staletext;

// The model stands on disk as it is.
void notesaved();
// It was changed since it was opened or saved; taking the steps back makes it saved again.
bool isunsaved();
// The same where a step is under way: what it has changed by now counts.
bool ischanged();
// The model in hand stands on no disk: it was recovered.
void noteunsaved();
bool isstepopen();  // a door is open: the model may be half changed

// What follows a step that changed the model, told after it; `stale` when the results have just
// become stale or current again.
extern std::function<void(bool stale)> afterstep;

// Bytes of the kept state and of all steps, and the most that they may be: a quarter of the
// machine's memory.
std::size_t journalbytes();
extern std::size_t journallimit;
