#include <vireline/LTMJson.h>

#include "ltm/JsonTree.h"

namespace LTM {

Reader::Reader() {}

bool Reader::parse(const Glib::ustring& text, Value& root) {
  const std::string& bytes = text.raw();
  return ParseJsonText(bytes.data(), bytes.data() + bytes.size(), &root, &mErrors);
}

Glib::ustring Reader::getFormattedErrorMessages() const { return Glib::ustring(mErrors); }

}  // namespace LTM
