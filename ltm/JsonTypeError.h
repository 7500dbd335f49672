// How LTM::Value reports a type error: through BaseUtils::Assert with the
// source name the devices' crash reports have always carried, a fixed line
// number per check (so reports from different builds stay comparable) and
// JsonCpp's own wording of the error.
#ifndef VIRELINE_LTM_JSONTYPEERROR_H_
#define VIRELINE_LTM_JSONTYPEERROR_H_

namespace LTM {

// The source name every type error carries.
extern const char kJsonValueSource[];

// The line number each check reports.
enum JsonCheckLine {
  kLineAsString = 101,
  kLineAsCString = 102,
  kLineAsInt = 103,
  kLineAsUInt = 104,
  kLineAsInt64 = 105,
  kLineAsUInt64 = 106,
  kLineAsFloat = 107,
  kLineAsDouble = 108,
  kLineAsBool = 109,
  kLineAsMap = 110,
  kLineIndex = 201,          // operator[](ArrayIndex) on a non-array
  kLineIndexConst = 202,     // const operator[](ArrayIndex) on a non-array
  kLineNegativeIndex = 203,  // operator[](int) with a negative index
  kLineNegativeIndexConst = 204,
  kLineKey = 205,            // operator[](key) on a non-object
  kLineFind = 206,           // const operator[](key), get(key), isMember on a non-object
  kLineAppend = 207,
  kLineResize = 208,
  kLineClear = 209,
  kLineRemoveMember = 210,
  kLineMemberNames = 211
};

// JsonCpp's texts for the checks that are not conversions.
extern const char kTextIndex[];
extern const char kTextIndexConst[];
extern const char kTextNegativeIndex[];
extern const char kTextNegativeIndexConst[];
extern const char kTextKey[];
extern const char kTextFind[];
extern const char kTextAppend[];
extern const char kTextResize[];
extern const char kTextClear[];
extern const char kTextRemoveMember[];
extern const char kTextMemberNames[];
extern const char kTextAsMap[];

// Asserts with "`text`\n", or "`operation` `text`\n" when an operation is
// named (JsonCpp's conversion texts do not say which conversion failed).
void ReportTypeError(int line, const char* operation, const char* text);

}  // namespace LTM

#endif  // VIRELINE_LTM_JSONTYPEERROR_H_
