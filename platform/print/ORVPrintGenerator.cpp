#include "platform/print/ORVPrintGenerator.h"

// The class's table stands here, so that generators of other modules share one.
ORVPrintGenerator::~ORVPrintGenerator() = default;
