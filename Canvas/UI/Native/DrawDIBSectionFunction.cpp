#include "Canvas/UI/Native/DrawDIBSectionFunction.h"

namespace UI
{
namespace Native
{

namespace
{
// Set once by the host layer at start-up, read by every paint on the main thread.
DrawDIBSectionFunction presenter = nullptr;
} // namespace

void SetDrawDIBSectionFunction(DrawDIBSectionFunction function)
{
    presenter = function;
}

DrawDIBSectionFunction GetDrawDIBSectionFunction()
{
    return presenter;
}

} // namespace Native
} // namespace UI
