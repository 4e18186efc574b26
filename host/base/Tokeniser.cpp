// The tokeniser behind CreateStringTokeniser.
#include "plugin/Qxtokeniser.h"

namespace qx {
namespace {

class StringTokeniser final : public Implements<IStringTokeniser> {
 public:
  explicit StringTokeniser(std::string text) : text_(std::move(text)) {}

  bool AtEnd() override { return at_ == text_.size(); }
  char Peek() override { return AtEnd() ? '\0' : text_[at_]; }
  char Read() override { return AtEnd() ? '\0' : text_[at_++]; }
  // Blanks are what separates words: everything up to the blank, control characters too.
  void SkipBlanks() override {
    while (!AtEnd() && static_cast<unsigned char>(text_[at_]) <= ' ') ++at_;
  }
  bool ReadUntil(char delimiter, std::string& text) override {
    const std::size_t end = text_.find(delimiter, at_);
    if (end == std::string::npos) return false;
    text = text_.substr(at_, end - at_);
    at_ = end + 1;
    return true;
  }
  std::string Rest() override {
    const std::size_t begin = at_;
    at_ = text_.size();
    return text_.substr(begin);
  }

 private:
  std::string text_;
  std::size_t at_ = 0;
};

}  // namespace

InterfacePtr<IStringTokeniser> CreateStringTokeniser(std::string text) {
  return MakeInterface<StringTokeniser>(std::move(text));
}

}  // namespace qx
