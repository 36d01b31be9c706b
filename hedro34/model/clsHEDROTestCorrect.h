// The correct answers of a question: a set of answer numbers, 16 bits wide and counted from 1, in the order in which they were
// added. Number n stands for the n-th element of the question's `Answers`. The key of an element is the number in decimal:
// `Exists(3)` asks for three elements, `Exists(u"3")` asks for answer 3.
//
// As one 32-bit value, bit k stands for answer number k + 1, for the numbers 1 to 31. A number below 1 adds the fraction of 1
// that its power of two is, and the sum is rounded to the nearest integer, halves to the even one.
#pragma once

#include "hedro34/model/collection.h"

namespace hedro34 {

class HEDRO34_API clsHEDROTestCorrect final : public Collection<clsHEDROTestCorrect, std::int16_t> {
 public:
  static constexpr const char16_t* class_name = u"clsHEDROTestCorrect";

  // True when added; False, and no report, when the number is there already.
  bool Add(std::int16_t Item, const Variant& Before = missing, const Variant& After = missing);
  std::int16_t Item(std::int16_t Index) const;  // the number at a position, or -1

  // A new set with the same numbers in the same order; an empty reference after a failure.
  Ref<clsHEDROTestCorrect> Copy() const;

  // The set as one value, 0 for none. A number above 31 does not fit: failure 6, and the sum so far is returned.
  std::int32_t GetBitWiseRepresentation() const;

  // The same, without a report. Not to be seen by name.
  std::int32_t bits() const noexcept;

  // Replaces the set by the numbers of the bits 0 to 30, in ascending order. Bit 31 is not looked at.
  void ConvertBitWiseRepresentation(std::int32_t BitWiseValue);

 private:
  void add_bits(std::int32_t& sum) const;
};

}  // namespace hedro34
