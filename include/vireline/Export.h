// Symbol visibility: only declarations marked VIRELINE_EXPORT leave libvireline.so.
#ifndef VIRELINE_EXPORT_H_
#define VIRELINE_EXPORT_H_

#define VIRELINE_EXPORT __attribute__((visibility("default")))

#endif  // VIRELINE_EXPORT_H_
