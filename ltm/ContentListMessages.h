// How the content lists report each folder they look at and each problem
// with the first model's "mdls.json": on the default channel, at the level
// applications have always watched for list errors.
#ifndef VIRELINE_LTM_CONTENTLISTMESSAGES_H_
#define VIRELINE_LTM_CONTENTLISTMESSAGES_H_

namespace LTM {

const int kContentListErrorLevel = 3;

// Prints the formatted message on the content lists' channel at kContentListErrorLevel.
void ReportContentList(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace LTM

#endif  // VIRELINE_LTM_CONTENTLISTMESSAGES_H_
