// Rounding as the program does it everywhere: to the nearest, with a value that lies
// exactly halfway going to the even neighbour ("banker's rounding").
#pragma once

#include <cstdint>

namespace quilmark {

// Nearest whole number, halves to even. NaN and infinities come back unchanged.
double Round_Half_Even(double x);

// Nearest multiple of 10^-decimals (0 <= decimals <= 15), halves to even. A value is a
// tie only when the exact binary value of x lies exactly halfway between two candidates,
// so 2.675 (really 2.67499999999999982236431605997495353221893310546875) goes down to
// 2.67 while 0.125 goes to 0.12. The result is the double nearest to the decimal result.
double Round_Decimals(double x, int decimals);

// Conversions from a floating value to an integer: nearest, halves to even. A value out
// of the type's range saturates at the nearer end of the range; NaN gives 0.
int16_t To_I16(double x);
int32_t To_I32(double x);

// Saturating narrowing of integer arithmetic done in a wider type.
int16_t Clamp_I16(int64_t v);
int32_t Clamp_I32(int64_t v);

} // namespace quilmark
