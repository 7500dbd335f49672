#include "ltm/JsonTypeError.h"

#include <string>

#include <vireline/BaseUtils.h>

namespace LTM {

const char kJsonValueSource[] = "VirelineJSON/Src/json_value";

const char kTextIndex[] = "in Json::Value::operator[](ArrayIndex): requires arrayValue";
const char kTextIndexConst[] = "in Json::Value::operator[](ArrayIndex)const: requires arrayValue";
const char kTextNegativeIndex[] = "in Json::Value::operator[](int index): index cannot be negative";
const char kTextNegativeIndexConst[] = "in Json::Value::operator[](int index) const: index cannot be negative";
const char kTextKey[] = "in Json::Value::resolveReference(key, end): requires objectValue";
const char kTextFind[] = "in Json::Value::find(begin, end): requires objectValue or nullValue";
const char kTextAppend[] = "in Json::Value::append: requires arrayValue";
const char kTextResize[] = "in Json::Value::resize(): requires arrayValue";
const char kTextClear[] = "in Json::Value::clear(): requires complex value";
const char kTextRemoveMember[] = "in Json::Value::removeMember(): requires objectValue";
const char kTextMemberNames[] = "in Json::Value::getMemberNames(), value must be objectValue";
const char kTextAsMap[] = "Type is not convertible to map";

void ReportTypeError(int line, const char* operation, const char* text) {
  std::string message = operation == nullptr ? std::string() : std::string(operation) + " ";
  message += text;
  message += "\n";
  BaseUtils::Instance()->Assert(0, kJsonValueSource, line, "%s", message.c_str());
}

}  // namespace LTM
