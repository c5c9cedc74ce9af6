// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/ORVFontFace.h"

#include <utility>

ORVFontFace::ORVFontFace(Description description) : description_(std::move(description)) {}

ORVFontFace::~ORVFontFace() = default;
