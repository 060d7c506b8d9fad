// Catalogue keys: what stands for a reason when no message object produced a text.

#pragma once

namespace QV_2_9::internal {

inline constexpr const wchar_t* kFileDoesNotExistKey = L"%FileDoesNotExist";
inline constexpr const wchar_t* kFileIsDirectoryKey = L"%FileIsDirectory";
inline constexpr const wchar_t* kCantOpenFileKey = L"%CantOpenFile";
inline constexpr const wchar_t* kChecksumMismatchKey = L"%ChecksumMismatch";
inline constexpr const wchar_t* kModificationTimeOrSizeMismatchKey =
    L"%ModificationTimeOrSizeMismatch";
inline constexpr const wchar_t* kSourceFileUpToDateKey = L"%SourceFileUpToDate";

}  // namespace QV_2_9::internal
