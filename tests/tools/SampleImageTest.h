// A fixture for inspector tests: a fresh copy of the sample device image as
// the device root, and a reader for the inspector's JSON output.
#ifndef VIRELINE_TESTS_TOOLS_SAMPLEIMAGETEST_H_
#define VIRELINE_TESTS_TOOLS_SAMPLEIMAGETEST_H_

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include <json/json.h>

#include "DeviceRootTest.h"
#include "InspectorRunner.h"

class SampleImageTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    std::filesystem::copy(ExamplesDir() + "/device-image", mRoot,
                          std::filesystem::copy_options::recursive);
  }

  // Runs `vireline --root <this root> <arguments>`.
  InspectorRun Run(const std::string& arguments) const { return RunInspector("--root " + mRoot + " " + arguments); }

  // The JSON document `text`; a test failure when it does not parse.
  static Json::Value ParseJson(const std::string& text) {
    Json::Value value;
    Json::CharReaderBuilder builder;
    std::string errors;
    std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    EXPECT_TRUE(reader->parse(text.data(), text.data() + text.size(), &value, &errors)) << errors << text;
    return value;
  }
};

#endif  // VIRELINE_TESTS_TOOLS_SAMPLEIMAGETEST_H_
