// The base of options objects.
#include "plugin/Qxoptions.h"

namespace qx {

TQXOptionsObject::TQXOptionsObject(const TQXOptionsClass& optionsClass) : class_(&optionsClass) {}
TQXOptionsObject::~TQXOptionsObject() = default;

void TQXOptionsObject::LoadOptions(IQXOptionsReader&) { modified_ = false; }
void TQXOptionsObject::SaveOptions(IQXOptionsWriter&) { modified_ = false; }
bool TQXOptionsObject::IsModified() const { return modified_; }
std::string TQXOptionsObject::GetOptionType() const { return std::string(class_->className); }
std::string TQXOptionsObject::GetOptionsName() const { return class_->getName(); }
std::string TQXOptionsObject::GetOptionsCategory() const { return class_->getCategory(); }

}  // namespace qx
