// SPDX-License-Identifier: GPL-3.0-or-later
// The processes of an MPI job. One thread of each talks to the others.
#pragma once

#include <mpi.h>

#include "solver/processes/ranks.h"

// MPI_Init, for a machine that has other work too.
void beginprocesses(int& count, char**& words);

class mpiranks : public ranks {
  public:
    mpiranks();  // after beginprocesses

    int me() const override { return number; }
    int count() const override { return all; }
    int here() const override { return onhost; }
    void sum(double* values, std::int64_t count) override;
    void most(double* values, std::int64_t count) override;
    void takefirst(double* values, std::int64_t count) override;
    std::vector<double> gather(const std::vector<double>& mine) override;
    std::vector<double> collect(const std::vector<double>& mine) override;
    void handin(std::string& mine, const std::function<void(std::string&)>& take) override;
    void nudge() override;
    void settle() override;
    std::string handout(const std::function<std::string()>& make) override;
    std::vector<std::string> exchange(std::vector<std::string> toeach) override;
    std::unique_ptr<route> findroute(const std::vector<int>& given,
                                     const std::vector<int>& taken) override;
    std::string anyfault(const std::string& mine) override;
    std::vector<std::uint16_t> partition(const model& m) override;
    void end(const std::string& fault) override;

    void checkversions(const std::string& version) override;
    void checksame(const std::string& what, const std::string& mine) override;
    std::string there() const override { return hostname == home ? "" : hostname + ": "; }
    const std::string& host() const { return hostname; }

  private:
    std::vector<std::string> texts(const std::string& mine);  // of all, everywhere

    int number = 0, all = 1, onhost = 1;
    std::string hostname, home;  // home: of the first
    std::string handed;          // to the first, by these messages
    std::vector<MPI_Request> underway;
    MPI_Comm farewell;  // apart from all other talk
};
