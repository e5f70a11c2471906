#include "megset/numeric/processorPath.h"
#include "megset/platform/version.h"

#include <iostream>

int main()
{
    std::cout << "megset " << megset::version() << '\n';
    std::cout << "vector unit " << megset::numeric::processorPath() << '\n';
}
