// A JSON document bound to a file: loaded whole in one step, written back
// whole and atomically in one step. Keys and defaults belong to its users.
#ifndef VIRELINE_CJSONFILE_H_
#define VIRELINE_CJSONFILE_H_

#include <vireline/Export.h>
#include <vireline/LTMJson.h>
#include <vireline/Types.h>

namespace LTM {

class VIRELINE_EXPORT CJSonFile {
 public:
  // No file: Load and Save fail at once; the document is an empty object.
  CJSonFile();

  // The file at `path`; the document is null until Load. A nonzero
  // `createIfMissing` makes Load create a missing file holding "{}".
  CJSonFile(const Glib::ustring& path, unsigned char createIfMissing);

  // The file `folder` + `name`, joined without a separator (the caller supplies the "/").
  CJSonFile(const Glib::ustring& folder, const Glib::ustring& name, unsigned char createIfMissing);

  // Releases the document; never writes the file.
  virtual ~CJSonFile();

  // Reads and parses the whole file into mRoot: 0 on success, 1 on any failure.
  virtual U32 Load();

  // Replaces the file atomically with the compact text of mRoot: 0 on success, 0x10001005 on any failure.
  virtual U32 Save();

 private:
  Glib::ustring mRsrcPath;
  unsigned char mCreateIfMissing;

 public:
  // The document; users read and change it in place.
  Value mRoot;
};

}  // namespace LTM

#endif  // VIRELINE_CJSONFILE_H_
