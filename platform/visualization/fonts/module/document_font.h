// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "platform/visualization/fonts/ORVDocumentFont.h"
#include "platform/visualization/fonts/module/file_face.h"

/// See ORVOpenDocumentFont. Throws FontFailure or std::bad_alloc.
std::shared_ptr<const FileFace> OpenDocumentFont(ORVDocumentFont font);
