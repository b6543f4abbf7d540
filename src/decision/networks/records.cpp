// Parameters, forecast and results of a network over the caller's arrays.
#include "numcore/bayesian_network.hpp"

namespace numcore {
namespace {

// Without a record there are no arrays.
template <class Record>
SAFEARRAY* orNull(const Record* source, SAFEARRAY* Record::*array) {
    return source == nullptr ? nullptr : source->*array;
}

}  // namespace

cBYN_Param::cBYN_Param(BYN_Param* source)
    : likelihoods(orNull(source, &BYN_Param::likelihoods)),
      observed(orNull(source, &BYN_Param::observed)),
      tables(orNull(source, &BYN_Param::tables)),
      nodeNames(orNull(source, &BYN_Param::nodeNames)),
      parents(orNull(source, &BYN_Param::parents)),
      queries(orNull(source, &BYN_Param::queries)),
      n(source == nullptr ? 0 : source->n),
      sizes(orNull(source, &BYN_Param::sizes)),
      nQueries(source == nullptr ? 0 : source->nQueries),
      stateNames(orNull(source, &BYN_Param::stateNames)),
      bounds(source == nullptr ? BYN_Bounds{} : source->bounds),
      mode(source == nullptr ? NUMCORE_BYN_INFER : source->mode) {}

cBYN_Forecast::cBYN_Forecast(BYN_Forecast* source)
    : record(source), cliqueCells(orNull(source, &BYN_Forecast::cliqueCells)) {}

void cBYN_Forecast::writeBack() const noexcept {
    if (record == nullptr) return;
    SAFEARRAY* const array = record->cliqueCells;
    *record = values;
    record->cliqueCells = array;
}

cBYN_Results::cBYN_Results(BYN_Results* source)
    : record(source),
      headers(orNull(source, &BYN_Results::headers)),
      marginalTitles(orNull(source, &BYN_Results::marginalTitles)),
      conditionalTitles(orNull(source, &BYN_Results::conditionalTitles)),
      marginalFormats(orNull(source, &BYN_Results::marginalFormats)),
      conditionalFormats(orNull(source, &BYN_Results::conditionalFormats)),
      familyFormats(orNull(source, &BYN_Results::familyFormats)),
      stateLabels(orNull(source, &BYN_Results::stateLabels)),
      marginals(orNull(source, &BYN_Results::marginals)),
      conditionLabels(orNull(source, &BYN_Results::conditionLabels)),
      conditionals(orNull(source, &BYN_Results::conditionals)),
      familyLabels(orNull(source, &BYN_Results::familyLabels)),
      familyJoints(orNull(source, &BYN_Results::familyJoints)),
      jointLabels(orNull(source, &BYN_Results::jointLabels)),
      joints(orNull(source, &BYN_Results::joints)),
      queryStatus(orNull(source, &BYN_Results::queryStatus)),
      queryCells(orNull(source, &BYN_Results::queryCells)),
      queryLabels(orNull(source, &BYN_Results::queryLabels)),
      queryTables(orNull(source, &BYN_Results::queryTables)),
      order(orNull(source, &BYN_Results::order)),
      orderWeights(orNull(source, &BYN_Results::orderWeights)),
      orderFills(orNull(source, &BYN_Results::orderFills)),
      fillFrom(orNull(source, &BYN_Results::fillFrom)),
      fillTo(orNull(source, &BYN_Results::fillTo)),
      cliqueSizes(orNull(source, &BYN_Results::cliqueSizes)),
      cliqueMembers(orNull(source, &BYN_Results::cliqueMembers)),
      joinFrom(orNull(source, &BYN_Results::joinFrom)),
      joinTo(orNull(source, &BYN_Results::joinTo)),
      separatorSizes(orNull(source, &BYN_Results::separatorSizes)),
      separatorMembers(orNull(source, &BYN_Results::separatorMembers)),
      cliqueParents(orNull(source, &BYN_Results::cliqueParents)),
      preorder(orNull(source, &BYN_Results::preorder)),
      postorder(orNull(source, &BYN_Results::postorder)),
      familyCliques(orNull(source, &BYN_Results::familyCliques)),
      forecast(source == nullptr ? nullptr : &source->forecast) {}

void cBYN_Results::writeBack() const noexcept {
    if (record == nullptr) return;
    forecast.writeBack();
    record->probability = probability;
    record->logProbability = logProbability;
    record->root = root;
    record->status = status;
}

}  // namespace numcore
