#include "host/history/KeptRun.h"

#include <zstd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <unordered_map>

#include "host/history/Digest.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

constexpr std::string_view kFirstLine = "qxhost run 1";
constexpr std::array<std::string_view, 4> kResults{"cut off", "succeeded", "failed", "stopped"};
// Text packs well at the first level; for what is large even that costs more than writing it.
constexpr int kLevel = 1;
constexpr int kLevelOfLarge = -6;
constexpr std::size_t kLarge = std::size_t{1} << 20;
// What a damaged record may claim of a block.
constexpr std::uint64_t kLargest = std::uint64_t{4} << 30;

// Fields are divided by tabs, which they hold no more than line ends.
void AppendEscaped(std::string& out, std::string_view text) {
  for (std::size_t at = text.find_first_of("\\\t\n"); at != std::string_view::npos;
       at = text.find_first_of("\\\t\n")) {
    out.append(text.substr(0, at)) += '\\';
    out += text[at] == '\t' ? 't' : text[at] == '\n' ? 'n' : '\\';
    text.remove_prefix(at + 1);
  }
  out += text;
}

std::string Unescaped(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      out += text[i];
      continue;
    }
    const char c = text[++i];
    out += c == 't' ? '\t' : c == 'n' ? '\n' : c;
  }
  return out;
}

std::string LineOf(std::initializer_list<std::string_view> fields) {
  std::string line;
  for (const std::string_view field : fields) {
    if (!line.empty()) line += '\t';
    AppendEscaped(line, field);
  }
  return line += '\n';
}

template <class Number>
bool ToNumber(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

std::vector<std::string> FieldsOf(std::string_view line) {
  std::vector<std::string> fields;
  for (;;) {
    const std::size_t tab = line.find('\t');
    fields.push_back(Unescaped(line.substr(0, tab)));
    if (tab == std::string_view::npos) return fields;
    line.remove_prefix(tab + 1);
  }
}

// Reads a record line by line; what is cut off at its end is as if it were not there.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}

  std::optional<KeptRun> Read() {
    std::vector<std::string> fields;
    if (!Next(fields) || fields[0] != kFirstLine) return std::nullopt;
    while (Next(fields) && Take(fields)) {
    }
    return std::move(record_);
  }

 private:
  bool Next(std::vector<std::string>& fields) {
    const std::size_t end = bytes_.find('\n', at_);
    if (end == std::string_view::npos) return false;
    fields = FieldsOf(bytes_.substr(at_, end - at_));
    at_ = end + 1;
    return true;
  }

  bool Take(const std::vector<std::string>& fields) {
    const std::string& kind = fields[0];
    const std::size_t count = fields.size();
    if (kind == "run" && count == 3)
      return ToNumber(fields[1], record_.run) && ToNumber(fields[2], record_.started);
    if (kind == "folder" && count == 2) return record_.folders.push_back(fields[1]), true;
    if (kind == "file" && count == 4) return TakeFile({fields[3], fields[1], fields[2]}), true;
    int action = 0;
    if (kind == "number" && count == 5 && ToNumber(fields[1], action))
      return TakeNumber({action, fields[2], fields[3], fields[4]}), true;
    if (kind == "version" && count == 5 && ToNumber(fields[1], action))
      return record_.versions.push_back({action, fields[2], fields[3], fields[4]}), true;
    if (kind == "end" && count == 3) return TakeEnd(fields[1], fields[2]);
    if (kind == "contents" && count == 4) return TakeContents(fields);
    return true;  // of a newer host
  }

  void TakeFile(KeptFile file) {
    const auto [place, isNew] = places_.try_emplace(file.path, record_.files.size());
    if (isNew)
      record_.files.push_back(std::move(file));
    else
      record_.files[place->second].after = std::move(file.after);
  }

  void TakeNumber(KeptNumber number) {
    for (KeptNumber& known : record_.numbers) {
      if (known.action != number.action || known.property != number.property) continue;
      known.after = std::move(number.after);
      return;
    }
    record_.numbers.push_back(std::move(number));
  }

  bool TakeEnd(const std::string& result, const std::string& seconds) {
    const auto found = std::find(kResults.begin(), kResults.end(), result);
    if (found == kResults.end() || !ToNumber(seconds, record_.seconds)) return false;
    record_.result = static_cast<KeptResult>(found - kResults.begin());
    return true;
  }

  // "contents COUNT PACKED WHOLE", COUNT lines "DIGEST SIZE", the block and a line end.
  bool TakeContents(const std::vector<std::string>& fields) {
    std::uint64_t count = 0, packed = 0, whole = 0, at = 0;
    if (!ToNumber(fields[1], count) || !ToNumber(fields[2], packed) || !ToNumber(fields[3], whole))
      return false;
    std::vector<KeptContent> contents;
    std::vector<std::string> line;
    for (std::uint64_t i = 0; i < count; ++i) {
      KeptContent content;
      if (!Next(line) || line.size() != 2 || !ToNumber(line[1], content.size)) return false;
      content.digest = line[0];
      content.at = at;
      at += content.size;
      contents.push_back(std::move(content));
    }
    if (at != whole || whole > kLargest || packed >= bytes_.size() - at_) return false;
    for (KeptContent& content : contents) {
      content.block = at_;
      content.packed = packed;
      content.whole = whole;
      record_.contents.push_back(std::move(content));
    }
    at_ += packed + 1;
    return true;
  }

  std::string_view bytes_;
  std::size_t at_ = 0;
  std::unordered_map<std::string, std::size_t> places_;  // of the files, by their paths
  KeptRun record_;
};

}  // namespace

std::string_view NameOf(KeptResult result) { return kResults.at(static_cast<std::size_t>(result)); }

std::string RecordHead(int run, std::int64_t started, std::span<const std::string> folders) {
  std::string text =
      std::string(kFirstLine) + "\n" + LineOf({"run", std::to_string(run), std::to_string(started)});
  for (const std::string& folder : folders) text += LineOf({"folder", folder});
  return text;
}

std::string RecordLine(const KeptFile& file) { return LineOf({"file", file.before, file.after, file.path}); }

std::string RecordLine(const KeptNumber& number) {
  return LineOf({"number", std::to_string(number.action), number.property, number.before, number.after});
}

std::string RecordLine(const KeptVersion& version) {
  return LineOf({"version", std::to_string(version.action), version.name, version.from, version.to});
}

std::string RecordEnd(KeptResult result, double seconds) {
  return LineOf({"end", NameOf(result), std::to_string(seconds)});
}

PackedContents PackContents(std::span<const DigestedContent> contents) {
  std::size_t size = 0;
  for (const DigestedContent& content : contents) size += content.bytes.size();
  PackedContents packed;
  std::string joined;
  if (contents.size() > 1) joined.reserve(size);
  std::string lines;
  for (const DigestedContent& content : contents) {
    // A large one comes alone, and need not be copied.
    if (contents.size() > 1) joined += content.bytes;
    lines += LineOf({content.digest, std::to_string(content.bytes.size())});
  }
  const std::string_view whole = contents.size() == 1 ? contents.front().bytes : std::string_view(joined);
  const std::size_t bound = ZSTD_compressBound(size);
  packed.block = std::make_unique_for_overwrite<char[]>(bound + 1);
  packed.size =
      ZSTD_compress(packed.block.get(), bound, whole.data(), size, size > kLarge ? kLevelOfLarge : kLevel);
  if (ZSTD_isError(packed.size) != 0)
    throw Exception(std::string("Cannot pack contents: ") + ZSTD_getErrorName(packed.size));
  packed.lines = LineOf({"contents", std::to_string(contents.size()), std::to_string(packed.size),
                         std::to_string(size)}) +
                 lines;
  packed.block[packed.size++] = '\n';
  return packed;
}

std::optional<KeptRun> ReadKeptRun(std::string_view bytes) { return Reader(bytes).Read(); }

KeptContents::KeptContents(const KeptRun& record, std::string_view bytes) : bytes_(bytes) {
  for (const KeptContent& content : record.contents) contents_.try_emplace(content.digest, content);
}

std::optional<std::string> KeptContents::Find(const std::string& digest) {
  const auto found = contents_.find(digest);
  if (found == contents_.end()) return std::nullopt;
  const KeptContent& content = found->second;
  if (block_ != content.block) {
    block_ = content.block;
    unpacked_.assign(static_cast<std::size_t>(content.whole), '\0');
    const std::size_t size =
        ZSTD_decompress(unpacked_.data(), unpacked_.size(), bytes_.data() + content.block, content.packed);
    if (ZSTD_isError(size) != 0 || size != unpacked_.size()) unpacked_.clear();
  }
  if (content.at + content.size > unpacked_.size()) return std::nullopt;
  std::string whole = unpacked_.substr(content.at, content.size);
  if (Sha256(whole) != digest) return std::nullopt;
  return whole;
}

}  // namespace qx
