// How deep the module follows nested structures, one limit per meaning.
#pragma once

namespace zrv {

// Nested containers (lists, tuples, dictionaries) in the arguments of
// problem methods: objects to add or delete, objectives, positions.
constexpr int kArgumentNesting = 32;

// Nested collections given to the aggregation functions (Sum, Prod, ...).
constexpr int kCollectionNesting = 64;

// Expression trees, walked to evaluate, print, copy or negate them.
constexpr int kTreeDepth = 64;

}  // namespace zrv
