// SPDX-License-Identifier: Apache-2.0
#pragma once

class ORVPrtGraphicPrimitiveElt;
class ORVPrtDefsElt;

/// Adds a primitive to its container: a group, page, holder of definitions, symbol, pattern or region. To
/// anything else it is not attached, and is lost when its creator releases it.
void AttachToContainer(ORVPrtGraphicPrimitiveElt& container, ORVPrtGraphicPrimitiveElt& primitive);

/// The container as a holder of definitions, null when it is none.
ORVPrtDefsElt* AsDefinitionHolder(ORVPrtGraphicPrimitiveElt& container);
