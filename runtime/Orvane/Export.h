#pragma once

/// Marks what a runtime gives to its users. Every class of these headers has default visibility, so that
/// `dynamic_cast` works from one shared library to the other.
#define ORVANE_API __attribute__((visibility("default")))
