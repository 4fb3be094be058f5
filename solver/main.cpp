// SPDX-License-Identifier: GPL-3.0-or-later
// Entry of the solver program.
int main() {
    return 1;
}
