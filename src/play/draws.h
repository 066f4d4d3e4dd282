#pragma once
#include <functional>

namespace fw {

class Program;
class TextBox;

// The game's dice. Every roll is one loop: a reseed, then draws until one
// lies above the loop's floor.

// A draw of size n: floor(Rnd x n), a whole number from 0 to n - 1.
int DrawOf(Program& p, int n);

// One roll: Randomize, then draws of size n until one exceeds floor. Each
// draw, the rejected ones too, goes to `each` as it comes; the last is given
// back.
int RollAbove(Program& p, int n, int floor, const std::function<void(int)>& each = {});

// A hit: 26 to 99, where 30 or less is a miss.
int HitDraw(Program& p);

// A blow's damage on top of the attack value: 2 to 9.
int DamageRoll(Program& p);
inline constexpr int kDamageRollSize = 10;
// The most a damage roll adds.
inline constexpr int kDamageRollMost = kDamageRollSize - 1;

// A Re-Roll loop: every draw shows in the box at once, the last one stays.
void RollInto(Program& p, const TextBox& box, int n, int floor);

// A level gain loop: every draw is added to the box's number, the rejected
// ones too.
void GrowBy(Program& p, const TextBox& box, int n, int floor);

}  // namespace fw
