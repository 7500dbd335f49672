// Releasing a value tree: shallow trees (every document) are released by
// plain recursion, deeper ones fall back to a work list, so even a tree a
// client nested hundreds of thousands of levels deep is released on a small
// stack, and every level is released whichever way it was reached.
#include <gtest/gtest.h>

#include <pthread.h>

#include <functional>
#include <string>

#include <vireline/LTMJson.h>

#include "EmulatorThreads.h"

using LTM::Value;

namespace {

// Runs `work` on a thread with a stack of `stackBytes` (far less than the
// main thread's), so a release that recursed once per level would overflow it.
void RunOnSmallStack(size_t stackBytes, const std::function<void()>& work) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, stackBytes), 0);
  pthread_t thread;
  auto run = [](void* argument) -> void* {
    (*static_cast<const std::function<void()>*>(argument))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&work)), 0);
  EXPECT_EQ(pthread_join(thread, nullptr), 0);
  pthread_attr_destroy(&attributes);
}

// A chain `levels` deep of objects and arrays in turn, the innermost holding
// "bottom". With `siblings` each level also holds a scalar and an empty
// container beside the next level, which is member "next" or element 2.
void BuildChain(Value* root, int levels, bool siblings) {
  Value* at = root;
  for (int i = 0; i < levels; ++i) {
    if (i % 2 == 0) {
      if (siblings) {
        (*at)["scalar"] = i;
        (*at)["empty"] = Value(LTM::arrayValue);
      }
      at = &(*at)["next"];
    } else {
      if (siblings) {
        at->append("before");
        at->append(Value(LTM::objectValue));
      }
      at = &(*at)[siblings ? 2u : 0u];
    }
  }
  *at = "bottom";
}

// The depth of a chain BuildChain made with siblings.
int ChainDepth(const Value& root) {
  int depth = 0;
  for (const Value* at = &root; at->isArray() || at->isObject(); ++depth) {
    at = at->isObject() ? &(*at)["next"] : &(*at)[2u];
  }
  return depth;
}

const size_t kSmallStack = 256 * 1024;

}  // namespace

TEST(ValueReleaseTest, AChainTwoHundredThousandLevelsDeepIsReleasedOnASmallStack) {
  SKIP_WITHOUT_THREADS();
  bool released = false;
  RunOnSmallStack(kSmallStack, [&released] {
    {
      Value root;
      BuildChain(&root, 200000, false);
    }
    released = true;
  });
  EXPECT_TRUE(released);
}

TEST(ValueReleaseTest, ClearingAndShrinkingReleaseDeepChildrenOnASmallStack) {
  SKIP_WITHOUT_THREADS();
  int depthAfterClear = -1;
  unsigned sizeAfterResize = 99;
  RunOnSmallStack(kSmallStack, [&] {
    Value object;
    BuildChain(&object, 200000, false);
    object.clear();
    depthAfterClear = ChainDepth(object);
    Value array;
    BuildChain(&array.append(Value()), 200000, false);
    array.resize(0);
    sizeAfterResize = array.size();
  });
  EXPECT_EQ(depthAfterClear, 1);  // the emptied object itself
  EXPECT_EQ(sizeAfterResize, 0u);
}

TEST(ValueReleaseTest, ChainsAroundTheRecursionDepthKeepTheirShapeUntilReleased) {
  for (int levels : {1, 2, 62, 63, 64, 65, 66, 127, 128, 129, 200}) {
    Value root;
    BuildChain(&root, levels, true);
    EXPECT_EQ(ChainDepth(root), levels);
    Value copy(root);
    root = Value();  // releases the original; the copy is untouched
    EXPECT_TRUE(root.isNull());
    EXPECT_EQ(ChainDepth(copy), levels);
  }
}

TEST(ValueReleaseTest, AWideTreeBelowTheRecursionDepthIsReleasedWhole) {
  Value root;
  for (int branch = 0; branch < 50; ++branch) {
    Value* at = &root["branch" + std::to_string(branch)];
    for (int level = 0; level < 80; ++level) at = &(*at)[0u]["deeper"];
    *at = branch;
  }
  Value kept = root["branch7"];
  root.clear();
  EXPECT_EQ(root.size(), 0u);
  const Value* at = &kept;
  for (int level = 0; level < 80; ++level) at = &(*at)[0u]["deeper"];
  EXPECT_EQ(at->asInt(), 7);
}
