#include "catalogue/arguments.h"

#include "catalogue/description.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace quent::rasterops::catalogue {

namespace {

Operator example() {
  Operator op;
  op.name = "example";
  Parameter size;
  size.name = "size";
  size.kind = Parameter::Kind::Integer;
  size.defaultValue = "3";
  size.least = 1;
  size.most = 31;
  Parameter factor;
  factor.name = "factor";
  factor.defaultValue = "0.5";
  Parameter edge;
  edge.name = "edge";
  edge.kind = Parameter::Kind::Choice;
  edge.choices = {"nodata", "mirror"};
  edge.defaultValue = "nodata";
  Parameter type;
  type.name = "ot";
  type.kind = Parameter::Kind::PixelType;
  op.parameters = {size, factor, edge, type};
  return op;
}

} // namespace

TEST(Arguments, DefaultsStandInForWhatIsNotTyped) {
  const Arguments arguments = Arguments::Parse(example(), {{"ot", "f32"}});
  EXPECT_EQ(arguments.Integer("size"), 3);
  EXPECT_EQ(arguments.Number("factor"), 0.5);
  EXPECT_EQ(arguments.Choice("edge"), "nodata");
  EXPECT_EQ(arguments.PixelType("ot"), F32);
}

TEST(Arguments, TypedValuesWin) {
  const Arguments arguments =
      Arguments::Parse(example(), {{"ot", "C128"}, {"size", "31"}, {"factor", "-2e3"}, {"edge", "mirror"}});
  EXPECT_EQ(arguments.Integer("size"), 31);
  EXPECT_EQ(arguments.Number("factor"), -2000.0);
  EXPECT_EQ(arguments.Choice("edge"), "mirror");
  EXPECT_EQ(arguments.PixelType("ot"), C128);
}

TEST(Arguments, RefusesWhatDoesNotFit) {
  EXPECT_THROW(Arguments::Parse(example(), {}), std::invalid_argument) << "ot has no default";
  for (const auto& [name, value] :
       {std::pair{"size", "0"}, std::pair{"size", "32"}, std::pair{"size", "3.5"}, std::pair{"size", "x"},
        std::pair{"factor", "1,5"}, std::pair{"edge", "Mirror"}, std::pair{"colour", "1"}})
    EXPECT_THROW(Arguments::Parse(example(), {{"ot", "U8"}, {name, value}}), std::invalid_argument)
        << name << " " << value;
  EXPECT_THROW(Arguments::Parse(example(), {{"ot", "U9"}}), std::invalid_argument);
}

TEST(PixelTypeNames, ReadInAnyCase) {
  EXPECT_EQ(ParsePixelType("u16"), U16);
  EXPECT_EQ(ParsePixelType("C64"), C64);
  EXPECT_THROW(ParsePixelType(""), std::invalid_argument);
  EXPECT_THROW(ParsePixelType("U16 "), std::invalid_argument);
  for (int type = 0; type < rbuf_PixelTypeCount; ++type)
    EXPECT_EQ(ParsePixelType(PixelTypeName(static_cast<Rbuf_PixelType>(type))), type);
}

} // namespace quent::rasterops::catalogue
