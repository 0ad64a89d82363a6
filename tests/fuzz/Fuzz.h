// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

/// Gives the code under test one input that the fuzzer made up; each target defines it. Besides
/// what the sanitizers see, a target checks with `require` what must hold of any input.
void feed(std::span<const std::byte> input);

/// Ends the program if `holds` is false; the fuzzer then keeps the input.
void require(bool holds, const char* what);

[[nodiscard]] std::string_view textOf(std::span<const std::byte> input);
