/// \file
/// What there is to know about an operator without any data at hand.
#pragma once

#include "catalogue/arguments.h"
#include "rasterops/ipixelblock.h"

#include <boost/shared_ptr.hpp>

#include <functional>
#include <string>
#include <vector>

namespace quent::rasterops::catalogue {

/// A raster that an operator reads.
struct Input {
  std::string name; ///< lower case, for instance "dividend"; options are derived from it
  std::string help;
  /// A single pixel may stand for the whole raster: a raster of 1 x 1, or a value on the command line.
  bool acceptsOneValue = false;
};

/// A setting of an operator.
struct Parameter {
  enum class Kind { Number, Integer, Choice, PixelType };

  std::string name; ///< the long option without dashes
  Kind kind = Kind::Number;
  std::string help;
  std::string unit;                 ///< empty if the value has none
  std::string defaultValue;         ///< as it would be typed; empty: the parameter must be given
  double least = 0.0;               ///< of Kind::Number and Kind::Integer, if least < most
  double most = 0.0;                ///< of Kind::Number and Kind::Integer, if least < most
  std::vector<std::string> choices; ///< of Kind::Choice
};

/// Pixels beyond the edges of a tile that an operator reads.
struct Halo {
  long left = 0;
  long top = 0;
  long right = 0;
  long bottom = 0;
};

/// How the output grid follows from the input grids.
enum class OutputGrid {
  SameAsInputs ///< all inputs have one grid, apart from single values, and the output has it too
};

/// What an output pixel still has to do with the pixel of the first input at its place.
enum class Meaning {
  Kept,    ///< it is the same quantity: colour table, scale, offset, unit and band names hold
  OfBands, ///< another quantity, band by band: band names hold
  New      ///< another quantity
};

/// One operator.
struct Operator {
  using Block = boost::shared_ptr<tilx::IPixelBlock>;

  std::string name;    ///< lower case with dashes
  std::string summary; ///< one line
  std::string details; ///< a paragraph: the formula, rounding, what becomes of invalid pixels
  std::vector<Input> inputs;
  std::vector<Parameter> parameters;

  std::vector<Rbuf_PixelType> inputTypes; ///< that it takes
  bool inputsShareType = true;            ///< all inputs must be of one type
  std::string outputTypeRule;             ///< in words
  /// Pixel type of the output for the types of the inputs.
  std::function<Rbuf_PixelType(const std::vector<Rbuf_PixelType>&, const Arguments&)> outputType;

  std::string outputBandsRule; ///< in words
  /// Bands of the output for the bands of the inputs; 0 if the inputs do not fit together.
  std::function<long(const std::vector<long>&)> outputBands;

  OutputGrid outputGrid = OutputGrid::SameAsInputs;
  std::function<Halo(const Arguments&)> halo;
  Meaning meaning = Meaning::New;
  bool outputAllValid = false; ///< no output pixel is ever invalid

  /// Computes one tile on the calling thread. Inputs have their masks computed; the output block has the
  /// size of the tile and no NODATA value, and its conditions are NODATA. What it holds at pixels that
  /// come out invalid does not matter.
  std::function<void(const std::vector<Block>& inputs, const Block& output, const Arguments&)> runTile;
};

} // namespace quent::rasterops::catalogue
