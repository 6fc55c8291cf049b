#pragma once

#include <filesystem>
#include <vector>

#include "faults/Trial.h"

namespace zaf::faults {

/// How much is tried: what every change has to pass, or everything.
enum class Extensiveness { kQuick, kLong };

/// The conversions that are disturbed, made of the sample applications. The first one is a tree
/// with one file of each kind, the second one the same with verification.
std::vector<TCase> MakeCases(const TProgram& program, const std::filesystem::path& samples,
                             const std::filesystem::path& work, Extensiveness extensiveness);

/// Every allocation of the trial's case fails.
void FailAllocations(TTrial& trial, Extensiveness extensiveness);
/// Every file operation of the trial's case fails, on each kind of machine.
void FailFileCalls(TTrial& trial, Extensiveness extensiveness);
/// The program is killed at every file operation, and the directories get other names there.
void KillAtFileCalls(TTrial& trial);
/// The conversion of a larger tree is killed at random moments.
void KillAtRandom(TTrial& trial, const TCase& what, Extensiveness extensiveness);

/// Limits of the system, full disks, directories that are not accessible, deep trees on a small
/// stack, a terminal that takes nothing, names and links that lead elsewhere.
void LimitResources(TTrial& trial, Extensiveness extensiveness);
void FillDisks(TTrial& trial);
void DenyAccess(TTrial& trial);
void CloseTerminal(TTrial& trial);
void ConvertDeepTrees(TTrial& trial, const std::vector<TCase>& cases);
void MisleadByNames(TTrial& trial, const TCase& what);

}  // namespace zaf::faults
