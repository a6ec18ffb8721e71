// Help texts of the cut pool members (members_cuts.cpp).
#pragma once

#include "base/help.h"

namespace zrv::help {

inline constexpr const char *kAddCuts = ZRV_HELP(
    "Stores cuts in the cut pool and loads them into the current node (outside a search: the "
    "root of the next search).",
    "p.addcuts(cuttype, rowtype, rhs, start, colind, cutcoef)",
    "cuttype: user tags; rowtype: 'L', 'G' or 'E'; rhs: right-hand sides; start: offsets "
    "of each cut's entries; colind, cutcoef: the entries.",
    "p.addcuts([1], ['L'], [1], [0, 2], [x, y], [1, 1])",
    "Cuts must hold for every integer solution. A problem with cuts is solved by the "
    "engine's own branch-and-cut.",
    "storecuts, loadcuts, delcuts");
inline constexpr const char *kStoreCuts = ZRV_HELP(
    "Stores cuts in the cut pool without loading them; the search adds those its solutions "
    "violate.",
    "p.storecuts(nodups, cuttype, rowtype, rhs, start, cutind, colind, cutcoef)",
    "nodups: 0 keep all, 1 reuse an equal cut, 2 reuse an equal cut of any type; cutind: a "
    "list that receives the poolcut handles.",
    "h = []; p.storecuts(0, [1], ['L'], [1], [0, 2], h, [x, y], [1, 1])",
    "The handles stay valid until delcpcuts deletes the cuts.",
    "addcuts, getcpcuts, delcpcuts");
inline constexpr const char *kLoadCuts = ZRV_HELP(
    "Loads pool cuts into the current node (outside a search: the root of the next search).",
    "p.loadcuts(cuttype, interp, cutind=None)",
    "interp: -1 every cut, 1 equal type, 2 some bit of cuttype, 3 all bits; cutind: poolcut "
    "handles, or None for every cut so selected.",
    "p.loadcuts(0, -1, handles)", "", "delcuts, getcutlist");
inline constexpr const char *kDelCuts = ZRV_HELP(
    "Unloads cuts from the current node; they stay in the pool.",
    "p.delcuts(basis, cuttype, interp, delta, cutind=None)",
    "basis: 1 keeps cuts tight at the node's solution; delta: only cuts whose slack exceeds "
    "it.",
    "p.delcuts(0, 0, -1, 0.0)", "", "loadcuts, delcpcuts");
inline constexpr const char *kDelCpCuts = ZRV_HELP(
    "Deletes cuts from the pool; their handles become invalid.",
    "p.delcpcuts(cuttype, interp, cutind=None)", "as loadcuts", "p.delcpcuts(0, -1)", "",
    "storecuts");
inline constexpr const char *kGetCpCutList = ZRV_HELP(
    "Pool cuts violated by at least delta at the current solution; returns their number.",
    "n = p.getcpcutlist(cuttype, interp, delta, maxcuts, cutind, viol)",
    "cutind, viol: lists that receive at most maxcuts handles and violations.",
    "n = p.getcpcutlist(0, -1, -1e20, 100, h, v)", "", "getcpcuts");
inline constexpr const char *kGetCpCuts = ZRV_HELP(
    "Reads pool cuts back by their handles.",
    "p.getcpcuts(rowind, maxcoefs, cuttype, rowtype, start, colind, cutcoef, rhs)",
    "rowind: poolcut handles; the other lists receive types, row types, offsets, entries and "
    "right-hand sides (at most maxcoefs entries).",
    "p.getcpcuts(h, 100, t, r, s, c, v, b)", "", "storecuts");
inline constexpr const char *kGetCutList = ZRV_HELP(
    "Cuts loaded at the current node; returns their number.",
    "n = p.getcutlist(cuttype, interp, maxcuts, cutind)", "cutind: receives the handles.",
    "n = p.getcutlist(0, -1, 100, h)", "", "loadcuts");
inline constexpr const char *kGetCutMap = ZRV_HELP(
    "The row of each cut in the current node's LP (-1: not in it).",
    "p.getcutmap(cutind, cutmap)", "cutmap: receives one row index per handle.",
    "p.getcutmap(h, m)", "", "getcutlist");
inline constexpr const char *kGetCutSlack = ZRV_HELP(
    "The slack (rhs - activity) of a pool cut at the current solution.",
    "s = p.getcutslack(cutind)", "cutind: one poolcut handle.", "s = p.getcutslack(h[0])", "",
    "getcpcutlist");
inline constexpr const char *kLoadDelayedRows = ZRV_HELP(
    "Marks rows as delayed: left out of the LPs, checked at integer solutions.",
    "p.loaddelayedrows(rowind)", "rowind: rows (indices, names or constraints).",
    "p.loaddelayedrows([c1, c2])", "Deleting rows clears the marks.", "loadmodelcuts");
inline constexpr const char *kLoadModelCuts = ZRV_HELP(
    "Marks rows as model cuts: left out of the LPs, added when a node's solution violates "
    "them.",
    "p.loadmodelcuts(rowind)", "rowind: rows.", "p.loadmodelcuts([c1])", "", "loaddelayedrows");
inline constexpr const char *kSetBranchCuts = ZRV_HELP(
    "Loads pool cuts into the current node, as loadcuts with the handles.",
    "p.setbranchcuts(cutind)", "cutind: poolcut handles.", "p.setbranchcuts(h)", "",
    "loadcuts");

}  // namespace zrv::help
