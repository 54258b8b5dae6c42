#include "catalogue/catalogue.h"

#include "rasterops/pixelblock.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace quent::rasterops::catalogue {

using tilx::PixelBlock;

TEST(Catalogue, EveryDescriptionIsComplete) {
  std::set<std::string> names;
  for (const Operator& op : Operators()) {
    SCOPED_TRACE(op.name);
    EXPECT_TRUE(names.insert(op.name).second) << "named twice";
    EXPECT_FALSE(op.summary.empty());
    EXPECT_EQ(op.summary.find('\n'), std::string::npos);
    EXPECT_FALSE(op.details.empty());
    EXPECT_FALSE(op.inputs.empty());
    EXPECT_FALSE(op.inputTypes.empty());
    EXPECT_FALSE(op.outputTypeRule.empty());
    EXPECT_FALSE(op.outputBandsRule.empty());
    EXPECT_TRUE(op.outputType && op.outputBands && op.halo && op.runTile);
    for (const Parameter& parameter : op.parameters)
      EXPECT_FALSE(parameter.help.empty()) << parameter.name;
  }
}

TEST(Catalogue, IsSortedByName) {
  EXPECT_TRUE(std::is_sorted(Operators().begin(), Operators().end(),
                             [](const Operator& a, const Operator& b) { return a.name < b.name; }));
}

TEST(Catalogue, FindsByName) {
  ASSERT_NE(FindOperator("divide"), nullptr);
  EXPECT_EQ(FindOperator("divide")->name, "divide");
  EXPECT_EQ(FindOperator("Divide"), nullptr);
  EXPECT_EQ(FindOperator(""), nullptr);
}

TEST(Catalogue, OneBandGoesWithMany) {
  const Operator& divide = *FindOperator("divide");
  EXPECT_EQ(divide.outputBands({3, 3}), 3);
  EXPECT_EQ(divide.outputBands({1, 4}), 4);
  EXPECT_EQ(divide.outputBands({4, 1}), 4);
  EXPECT_EQ(divide.outputBands({2, 3}), 0);
}

namespace {

boost::shared_ptr<PixelBlock> block(Rbuf_PixelType type, long width,
                                    std::initializer_list<unsigned char> bytes) {
  const auto result = boost::make_shared<PixelBlock>(1, width, 1, type, nullptr);
  std::copy(bytes.begin(), bytes.end(), result->getPlaneData(0)->data);
  result->setCompositeCondition(tilx::ALLDATA);
  return result;
}

void run(const char* name, const std::vector<Operator::Block>& inputs, const Operator::Block& output,
         const std::map<std::string, std::string>& typed = {}) {
  const Operator& op = *FindOperator(name);
  op.runTile(inputs, output, Arguments::Parse(op, typed));
}

} // namespace

TEST(Catalogue, RunsDivide) {
  const auto output = boost::make_shared<PixelBlock>(1, 3, 1, U8, nullptr);
  run("divide", {block(U8, 3, {10, 9, 7}), block(U8, 3, {3, 0, 7})}, output);
  EXPECT_EQ(output->getPlaneData(0)->data[0], 3);
  EXPECT_EQ(output->getPlaneData(0)->data[2], 1);
  EXPECT_EQ(output->getCondition(0), tilx::SOMEDATA);
}

TEST(Catalogue, RunsConvertWithMask) {
  const auto input = block(U8, 2, {200, 5});
  unsigned char five = 5;
  input->setNODATAValue(0, &five);
  input->computeMasks();
  const auto output = boost::make_shared<PixelBlock>(1, 2, 1, S8, nullptr);
  run("convert", {input}, output, {{"ot", "S8"}});
  EXPECT_EQ(output->getPlaneData(0)->data[0], 127);
  EXPECT_EQ(output->getCondition(0), tilx::SOMEDATA);
  EXPECT_EQ(output->getMaskData(0)->data[0], 255);
  EXPECT_EQ(output->getMaskData(0)->data[1], 0);
}

TEST(Catalogue, RunsMaskForEveryCondition) {
  const auto output = boost::make_shared<PixelBlock>(1, 2, 1, U8, nullptr);
  const auto pixels = [&output] {
    return std::vector<int>{output->getPlaneData(0)->data[0], output->getPlaneData(0)->data[1]};
  };
  const auto input = block(U8, 2, {200, 5});
  run("mask", {input}, output);
  EXPECT_EQ(pixels(), (std::vector<int>{255, 255}));
  input->setPlaneToNODATA(0);
  run("mask", {input}, output);
  EXPECT_EQ(pixels(), (std::vector<int>{0, 0}));
  unsigned char five = 5;
  input->setNODATAValue(0, &five);
  input->setCondition(0, tilx::UNKNOWN);
  input->computeMasks();
  run("mask", {input}, output);
  EXPECT_EQ(pixels(), (std::vector<int>{255, 0}));
  EXPECT_EQ(output->getCondition(0), tilx::ALLDATA) << "the mask's own pixels are all data";
}

} // namespace quent::rasterops::catalogue
