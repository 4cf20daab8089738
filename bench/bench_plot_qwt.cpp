#include "bench/QwtRival.h"
#include "bench/plot_comparison.h"

int main(int argc, char** argv)
{
    return plot_comparison::run<QwtRival>(argc, argv, "qwt");
}
