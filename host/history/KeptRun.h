// What is kept of one run of a build project: when it was and how it ended, the files it changed, the numbers it
// raised, and the contents of those files from before it. One file a run, which only grows: a run that was cut off
// has no end in it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qx {

struct KeptFile {
  std::string path;           // on disk
  std::string before, after;  // SHA-256; empty: there was no such file
};

// A property of an action that the run changed.
struct KeptNumber {
  int action = 0;  // 1-based
  std::string property, before, after;
};

struct KeptVersion {
  int action = 0;
  std::string name, from, to;
};

enum class KeptResult { CutOff, Succeeded, Failed, Stopped };
// "cut off", "succeeded", "failed", "stopped".
std::string_view NameOf(KeptResult result);

// Where a content lies within its record.
struct KeptContent {
  std::string digest;
  std::uint64_t block = 0;         // the offset of its packed block in the record's file
  std::uint64_t packed = 0;        // the size of that
  std::uint64_t whole = 0;         // its size unpacked
  std::uint64_t at = 0, size = 0;  // the content within it
};

struct KeptRun {
  int run = 0;
  std::int64_t started = 0;  // seconds since 1970, UTC
  double seconds = 0;
  KeptResult result = KeptResult::CutOff;
  std::vector<std::string> folders;  // that the run worked in
  std::vector<KeptFile> files;       // each once: as it was before the run, and as the run left it
  std::vector<KeptNumber> numbers;   // likewise
  std::vector<KeptVersion> versions;
  std::vector<KeptContent> contents;
};

// A record as text, a line each, in any order behind the first; contents are blocks between lines. Written by
// the functions below, read by ReadKeptRun as far as it is whole.
std::string RecordHead(int run, std::int64_t started, std::span<const std::string> folders);
std::string RecordLine(const KeptFile& file);
std::string RecordLine(const KeptNumber& number);
std::string RecordLine(const KeptVersion& version);
std::string RecordEnd(KeptResult result, double seconds);
// A block of contents, packed as one.
struct DigestedContent {
  std::string digest;
  std::string_view bytes;
};
struct PackedContents {
  std::string_view Block() const { return {block.get(), size}; }

  std::string lines;              // that come before the block in the record
  std::unique_ptr<char[]> block;  // with its line end
  std::size_t size = 0;           // of both
};
PackedContents PackContents(std::span<const DigestedContent> contents);

// None for what is no record.
std::optional<KeptRun> ReadKeptRun(std::string_view bytes);

// The contents of a record, by their digests; each block is unpacked once while its contents are asked for in turn.
class KeptContents {
 public:
  // `bytes` are the record's, and outlive the object.
  KeptContents(const KeptRun& record, std::string_view bytes);
  // None when it is not in it, or damaged.
  std::optional<std::string> Find(const std::string& digest);

 private:
  std::string_view bytes_;
  std::unordered_map<std::string, KeptContent> contents_;
  std::uint64_t block_ = 0;  // the one that is unpacked; no block stands at 0
  std::string unpacked_;
};

}  // namespace qx
