// Currency arithmetic on the hot path of balances: exact sums of many amounts.
#include <benchmark/benchmark.h>

#include "support/currency.hpp"

static void BM_CurrencySum(benchmark::State& state) {
  ldg::Currency amount = *ldg::Currency::Parse("123.4567");
  for (auto _ : state) {
    ldg::Currency sum;
    for (int i = 0; i < 1000; ++i) sum += amount;
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(BM_CurrencySum);
