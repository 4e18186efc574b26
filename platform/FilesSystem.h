// What platform/Files.cpp asks of the system, one source an OS. A reason is the system's text, empty for
// success.
#pragma once

#include <string>
#include <string_view>

namespace qx::system {

// Reads a regular file whole into a buffer that keeps its memory.
bool Read(const std::string& path, std::string& bytes, std::string& reason);

// The path on disk that a write to `path` goes to: native, absolute, links followed; the file need not exist.
std::string WriteTarget(const std::string& path);

// Why a file at a write target may not be replaced: it is no regular file, or read-only. Empty when it may,
// or when there is none.
std::string WhyNotWritable(const std::string& target);

// Writes beside the target, flushes, renames. The mode is taken from the file `model`, with leave to write;
// from the old file when `model` is empty.
bool Replace(const std::string& target, std::string_view bytes, const std::string& model,
             std::string& reason);

bool Remove(const std::string& target, std::string& reason);

// Makes one folder; true when it exists afterwards.
bool MakeFolder(const std::string& path, std::string& reason);

bool IsFolder(const std::string& path);

}  // namespace qx::system
