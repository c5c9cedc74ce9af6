// SPDX-License-Identifier: Apache-2.0
#pragma once

class ORVPrtModel;
class SvgDocumentSource;

/// Builds the pages of a document into a model. A root "svg" with two or more "svg" children gives one page
/// per child, otherwise a single page; a root with another name gives one page per "svg" child. With the DOM
/// back-end, the same rule applies to the following siblings of the root.
///
/// Memory is monitored during the build: when it runs short, the framework is notified, and depending on its
/// on-error action the build ends early with the content built so far.
/// @param model  may be null: the build then fails
/// @return 1, or -1 if there is nothing to read or the DOM back-end cannot parse it
int BuildModel(const SvgDocumentSource& source, ORVPrtModel* model);
