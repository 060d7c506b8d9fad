// Makes the compiler lay out public classes. Compiled only, for a target with 32-bit pointers and
// the binary interface of Windows; never linked.
//
// check_layout.py appends `template struct Derived<X>;` for each listed class X that is not named
// here: a class is laid out when something derives from it and has a constructor.

#include "quiver/quiver.h"

using namespace QV_2_9;

template <class T>
struct Derived : T {
  Derived();
};
template <class T>
Derived<T>::Derived() {}

// What is no plain class, or needs arguments.

template struct Derived<RefCountImpl<IQVObject>>;

struct DerivedChecksumValidator : ChecksumValidator {
  DerivedChecksumValidator();
};
DerivedChecksumValidator::DerivedChecksumValidator() : ChecksumValidator(0, nullptr) {}

struct DerivedSourceFileTimeAndSizeMatchValidator : SourceFileTimeAndSizeMatchValidator {
  DerivedSourceFileTimeAndSizeMatchValidator();
};
DerivedSourceFileTimeAndSizeMatchValidator::DerivedSourceFileTimeAndSizeMatchValidator()
    : SourceFileTimeAndSizeMatchValidator(0, 0) {}

struct DerivedSourceFileUpToDateCheckValidator : SourceFileUpToDateCheckValidator {
  DerivedSourceFileUpToDateCheckValidator();
};
DerivedSourceFileUpToDateCheckValidator::DerivedSourceFileUpToDateCheckValidator()
    : SourceFileUpToDateCheckValidator(nullptr) {}

// The events of a journal.

JournalLookup lookup;
JournalSuggestion suggestion;
JournalDirectory directory;
JournalCandidate candidate;
JournalServer server;
JournalStepEnd stepEnd;
JournalStepNotRun stepNotRun;
JournalAnswer answer;

CallbackHolder<ISearchStartedCallback> holder;
ObjectPtr<IQVObject> pointer;
