// Ordering and equality of LTM::Value, JsonCpp's: kinds first, then content;
// containers by size, then element by element (members by key, then value).
// The walk keeps its own stack, so arbitrarily deep trees compare safely.
#include <vireline/LTMJson.h>

#include <vector>

#include "ltm/ValueAccess.h"

namespace LTM {
namespace {

template <typename T>
int Order(const T& a, const T& b) {
  return a < b ? -1 : (b < a ? 1 : 0);
}

class Comparison {
 public:
  // -1, 0 or 1; a pair that cannot be ordered (NaN) counts as equal here.
  int Run(const Value& a, const Value& b) {
    int result = Visit(a, b);
    while (result == 0 && !mPending.empty()) result = Step();
    return result;
  }

  // True when some pair could not be ordered, so "equal" does not hold.
  bool sawUnordered() const { return mUnordered; }

 private:
  struct Frame {
    const Value* a;
    const Value* b;
    size_t index;
    Value::ObjectValues::const_iterator memberA, memberB;
  };

  // Compares two nodes without descending; a pair of equal-sized non-empty
  // containers is queued for Step.
  int Visit(const Value& a, const Value& b) {
    if (a.type() != b.type()) return Order(a.type(), b.type());
    switch (a.type()) {
      case nullValue: return 0;
      case intValue: return Order(ValueAccess::IntOf(a), ValueAccess::IntOf(b));
      case uintValue: return Order(ValueAccess::UIntOf(a), ValueAccess::UIntOf(b));
      case realValue: return OrderReal(ValueAccess::RealOf(a), ValueAccess::RealOf(b));
      case stringValue: return Order(ValueAccess::StringOf(a), ValueAccess::StringOf(b));
      case booleanValue: return Order(ValueAccess::BoolOf(a), ValueAccess::BoolOf(b));
      case arrayValue:
      case objectValue: break;
    }
    if (a.size() != b.size()) return Order(a.size(), b.size());
    if (a.size() != 0) Queue(a, b);
    return 0;
  }

  int OrderReal(double a, double b) {
    int result = Order(a, b);
    if (result == 0 && !(a == b)) mUnordered = true;
    return result;
  }

  void Queue(const Value& a, const Value& b) {
    Frame frame{&a, &b, 0, {}, {}};
    if (a.type() == objectValue) {
      frame.memberA = ValueAccess::ObjectOf(a).begin();
      frame.memberB = ValueAccess::ObjectOf(b).begin();
    }
    mPending.push_back(frame);
  }

  // Compares the next child pair of the innermost queued containers.
  int Step() {
    Frame& frame = mPending.back();
    if (frame.index == frame.a->size()) {
      mPending.pop_back();
      return 0;
    }
    const Value* childA;
    const Value* childB;
    if (frame.a->type() == arrayValue) {
      childA = ValueAccess::ArrayOf(*frame.a)[frame.index].get();
      childB = ValueAccess::ArrayOf(*frame.b)[frame.index].get();
    } else {
      int keys = Order(frame.memberA->first.raw(), frame.memberB->first.raw());
      if (keys != 0) return keys;
      childA = &(frame.memberA++)->second;
      childB = &(frame.memberB++)->second;
    }
    ++frame.index;
    return Visit(*childA, *childB);  // may grow mPending: `frame` is not used after this
  }

  std::vector<Frame> mPending;
  bool mUnordered = false;
};

}  // namespace

int Value::compare(const Value& other) const { return Comparison().Run(*this, other); }

bool Value::operator<(const Value& other) const { return compare(other) < 0; }
bool Value::operator<=(const Value& other) const { return !(other < *this); }
bool Value::operator>=(const Value& other) const { return !(*this < other); }
bool Value::operator>(const Value& other) const { return other < *this; }

bool Value::operator==(const Value& other) const {
  Comparison comparison;
  return comparison.Run(*this, other) == 0 && !comparison.sawUnordered();
}

bool Value::operator!=(const Value& other) const { return !(*this == other); }

}  // namespace LTM
