#include <vireline/LTMJson.h>

#include <exception>

#include "ltm/JsonTree.h"

namespace LTM {

Reader::Reader() {}

bool Reader::parse(const Glib::ustring& text, Value& root) {
  mErrors.clear();
  root = Value();
  // Documents are UTF-8; a string of any other bytes would reach clients as
  // a Glib::ustring that Glib's character functions cannot walk.
  if (!text.validate()) {
    mErrors = "The document is not valid UTF-8.\n";
    return false;
  }
  Json::Value json;
  try {
    Json::Reader reader;
    const std::string& bytes = text.raw();
    if (!reader.parse(bytes.data(), bytes.data() + bytes.size(), json, false)) {
      mErrors = reader.getFormattedErrorMessages();
      return false;
    }
  } catch (const std::exception& error) {  // JsonCpp throws past its nesting limit
    mErrors = std::string(error.what()) + "\n";
    return false;
  }
  Value parsed;
  if (!FromJsonTree(json, &parsed)) {
    mErrors = "The document is nested too deeply.\n";
    return false;
  }
  root = std::move(parsed);
  return true;
}

Glib::ustring Reader::getFormattedErrorMessages() const { return Glib::ustring(mErrors); }

}  // namespace LTM
