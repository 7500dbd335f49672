// Text that may hold any bytes (key=value files, play-log strings), made fit
// to show: valid UTF-8 stays as it is, a backslash becomes "\\", control
// characters and bytes that are not valid UTF-8 become "\xNN". The inspector,
// the play-log JSON and the Python module all show text this way.
#ifndef VIRELINE_DISPLAYTEXT_H_
#define VIRELINE_DISPLAYTEXT_H_

#include <string>

#include <vireline/Export.h>

namespace vireline {

// `text` as a person or a JSON document should see it; "" for null.
VIRELINE_EXPORT std::string DisplayText(const char* text);

}  // namespace vireline

#endif  // VIRELINE_DISPLAYTEXT_H_
