// SPDX-License-Identifier: Apache-2.0
#pragma once

class ORVPrtModel;
class SvgDocumentSource;

/// Builds the pages of a document into a model. A root "svg" with two or more direct "svg" children gives a
/// page for each of them, else one page; a root of another name gives a page for each direct "svg" child.
/// With the DOM back-end the root's following siblings are handled by the same rule.
///
/// Memory is watched on the way: when it is short, the framework is informed, and the build ends early, with
/// what it has, if the framework's on-error action says so.
/// @param model  may be null: the build then fails
/// @return 1, or -1 when there is nothing to read or the DOM back-end cannot parse it
int BuildModel(const SvgDocumentSource& source, ORVPrtModel* model);
