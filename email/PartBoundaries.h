#pragma once

// The lines between the parts of a message are made of these, the same in every message: the inner one stands between
// the two texts of a message with pictures.
inline constexpr char kOuterBoundary[] = "CVN2_A_3435FE2_6617A_AA";
inline constexpr char kInnerBoundary[] = "CVN2_B_3435FE2_6617B_BB";
