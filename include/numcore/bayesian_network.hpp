// Bayesian networks inside the library; `numcore/bayesian_network.h` tells what the records' fields are.
//
// The routines below share one way of writing things down. Nodes and cliques are numbers from 1, kept as
// doubles in column sets: a vector is one column, a matrix n columns of n rows. A number is read by truncation,
// and what is not a number of a node or clique there is, is none. A node set is a vector whose cells of 1 or
// more are its members, in any cell. Graphs are n x n matrices of 0 and 1, cliques the rows of an n x n matrix,
// each row a node set in which node j stands in column j. Results are written into the table that is given when
// it has the shape, and otherwise into storage of its own. A table of probabilities over several nodes is one
// column, its first node slowest; the members of a clique are in ascending order. Every routine is a thin
// layer: an argument that does not fit leaves zeros.
#pragma once

#include "numcore/bayesian_network.h"
#include "numcore/dataset.hpp"

namespace numcore {

using cBYN_Table = cST_MVect<double>;
using cBYN_Potentials = matrix3D<cST_MVect<double>>;

/// The inside of BYN_Param: its arrays in place, field by field.
class NUMCORE_API cBYN_Param {
  public:
    cBYN_Param() = default;
    explicit cBYN_Param(BYN_Param* source);

    matrix<double> likelihoods;
    matrix<std::int32_t> observed;
    matrix<double> tables;
    matrix<u16string> nodeNames;
    matrix<double> parents;
    matrix3D<matrix<double>> queries;
    std::int32_t n = 0;
    matrix<std::int32_t> sizes;
    std::int32_t nQueries = 0;
    matrix<u16string> stateNames;
    BYN_Bounds bounds{};
    std::int32_t mode = NUMCORE_BYN_INFER;
};

/// The inside of BYN_Forecast.
class NUMCORE_API cBYN_Forecast {
  public:
    cBYN_Forecast() = default;
    explicit cBYN_Forecast(BYN_Forecast* source);
    /// Copies everything but the array into the record it was built from, if any.
    void writeBack() const noexcept;

    BYN_Forecast* record = nullptr;
    matrix<double> cliqueCells;
    BYN_Forecast values{};
};

/// The inside of BYN_Results: its tables over the caller's arrays.
class NUMCORE_API cBYN_Results {
  public:
    cBYN_Results() = default;
    explicit cBYN_Results(BYN_Results* source);
    /// Copies status, probability and forecast into the record it was built from, if any.
    void writeBack() const noexcept;

    BYN_Results* record = nullptr;
    matrix<u16string> headers;
    matrix<u16string> marginalTitles;
    matrix<u16string> conditionalTitles;
    matrix<u16string> marginalFormats;
    matrix<u16string> conditionalFormats;
    matrix<u16string> familyFormats;
    matrix<u16string> stateLabels;
    matrix<double> marginals;
    matrix<u16string> conditionLabels;
    matrix<double> conditionals;
    matrix<u16string> familyLabels;
    matrix<double> familyJoints;
    matrix<u16string> jointLabels;
    matrix<double> joints;
    matrix<std::int32_t> queryStatus;
    matrix<double> queryCells;
    matrix<u16string> queryLabels;
    matrix<double> queryTables;
    matrix<std::int32_t> order;
    matrix<double> orderWeights;
    matrix<double> orderFills;
    matrix<std::int32_t> fillFrom;
    matrix<std::int32_t> fillTo;
    matrix<std::int32_t> cliqueSizes;
    matrix<std::int32_t> cliqueMembers;
    matrix<std::int32_t> joinFrom;
    matrix<std::int32_t> joinTo;
    matrix<std::int32_t> separatorSizes;
    matrix<std::int32_t> separatorMembers;
    matrix<std::int32_t> cliqueParents;
    matrix<std::int32_t> preorder;
    matrix<std::int32_t> postorder;
    matrix<std::int32_t> familyCliques;
    cBYN_Forecast forecast;
    double probability = kMissing;
    double logProbability = kMissing;
    std::int32_t root = 0;
    std::int32_t status = NUMCORE_BYN_DONE;
};

// ---- The analysis
// ------------------------------------------------------------------------------------------------------------

/// `Cpp_BYNRun_DAG_ST` inside the library. Results, messages, text and the host's flag are not used.
NUMCORE_API std::int32_t BYNRun_DAG_ST(cST_DataSet& data, cBYN_Param& param, cBYN_Results& results,
                                       matrix<u16string>& messages, std::u16string& text, std::int32_t flag);
/// `Cpp_BYNRun_Compute_ST` inside the library: `BYNRunmethod_Compute_ST`, then `BYNFillTbF_ST`.
NUMCORE_API void BYNRun_Compute_ST(cST_DataSet& data, cBYN_Param& param, cBYN_Results& results,
                                   matrix<u16string>& messages, std::u16string& text, std::int32_t flag);
/// Tree, probabilities and labels, without titles and formats.
NUMCORE_API void BYNRunmethod_Compute_ST(cST_DataSet& data, cBYN_Param& param, cBYN_Results& results,
                                         matrix<u16string>& messages, std::u16string& text, std::int32_t flag);
/// Titles and formats of each node's tables: message 7510 heads the node, 7511 with the node's label in place
/// of "XXXX" titles its first table, 7512 with its number the second; message 319 is the format of every table,
/// the third one's of the nodes with a known size.
NUMCORE_API void BYNFillTbF_ST(cST_DataSet& data, cBYN_Param& param, cBYN_Results& results,
                               matrix<u16string>& messages, std::u16string& text, std::int32_t flag);

/// `Cpp_BYNRun_Forecast_ST` inside the library.
NUMCORE_API std::int32_t BYNRun_Forecast_ST(cST_DataSet& data, const cBYN_Param& param,
                                            cBYN_Forecast& forecast);

// ---- Sets and small things
// ------------------------------------------------------------------------------------------------------------

/// Position, from 1, of the last of the first count labels (of the first column) that equals key; 0 without
/// one.
NUMCORE_API std::int32_t GetCorrelatedIndex_ST(const std::u16string& key, const cST_MVect<u16string>& labels,
                                               std::int32_t count);
/// Members of either set, each once: those of a in their order, then the others of b.
NUMCORE_API void Myunion_ST(const cBYN_Table& a, const cBYN_Table& b, cBYN_Table& out);
/// Members among the first n cells of a that are among the first n of b.
NUMCORE_API void Myintersect_ST(std::int32_t n, const cBYN_Table& a, const cBYN_Table& b, cBYN_Table& out);
/// True (-1) when one of two sets, over the first n cells, holds the other; false (0) when either is empty.
NUMCORE_API std::int16_t Mysubset_ST(std::int32_t n, const cBYN_Table& a, const cBYN_Table& b);
/// Position, from 1, of the smallest of the first n cells, the first of equals; 0 for no cells.
NUMCORE_API std::int32_t V_MinPos_ST(const cBYN_Table& x, std::int32_t n);
/// Number of cells above 0 among the first n.
NUMCORE_API std::int32_t V_NonZeroNb_ST(const cBYN_Table& x, std::int32_t n);
/// Number of cells equal to a value among the first n.
NUMCORE_API std::int32_t V_NbValue(const matrix<double>& x, std::int32_t n, double value);

/// Odd part u and even part v of the Pade approximant of degree 3 of the exponential of a square matrix.
NUMCORE_API void F_3(const matrix<double>& a, matrix<double>& u, matrix<double>& v);
/// `F_3` of degree 5.
NUMCORE_API void F_5(const matrix<double>& a, matrix<double>& u, matrix<double>& v);
/// `F_3` of degree 7.
NUMCORE_API void F_7(const matrix<double>& a, matrix<double>& u, matrix<double>& v);
/// `F_3` of degree 9.
NUMCORE_API void F_9(const matrix<double>& a, matrix<double>& u, matrix<double>& v);
/// exp(a) of a square matrix by the diagonal Pade approximant of degree 3, 5, 7, 9 or 13, without scaling;
/// zeros for another degree.
NUMCORE_API void PadeApproximantOfDegree(const matrix<double>& a, std::int32_t degree, matrix<double>& out);

// ---- Graphs
// ------------------------------------------------------------------------------------------------------------

/// Graph of the arcs: 1 at (parent, child). Parents by key, `BYN_Param` tells how.
///
/// @param parents  a column per node: numbers of its parents
/// @param labels   keys of the nodes, in the first column
NUMCORE_API void BYNRun_dag_Compute_ST(std::int32_t n, const matrix<double>& parents,
                                       const cST_MVect<u16string>& labels, cBYN_Table& dag);
/// Moral graph: arcs without direction, parents of a node joined with one another.
NUMCORE_API void BYNRun_moralize_ST(std::int32_t n, const cBYN_Table& dag, const matrix<double>& parents,
                                    const cST_MVect<u16string>& labels, cBYN_Table& moral);
/// Greedy elimination order, as `Cpp_BYNRun_Compute_ST` tells.
///
/// @param sizes         states of each node; 0 or less unknown
/// @param stage         node set: the candidates; other nodes are not eliminated and give 0 at the end of the
/// order
/// @param rows, columns out: for each node i the row of its neighbours, j in cell (i, j), in the graph with the
///                      edges that the elimination added
/// @param order         out: nodes in order of elimination
NUMCORE_API void BYNRun_best_first_elim_order_Compute_ST(std::int32_t n, const cBYN_Table& graph,
                                                         const matrix<std::int32_t>& sizes,
                                                         const cBYN_Table& stage, cBYN_Table& rows,
                                                         cBYN_Table& columns, cBYN_Table& order);
/// The same with stages: nodes of a lower stage go before all others. With equal stages the best-first order.
///
/// @param stages  a number per node
NUMCORE_API void BYNRun_strong_elim_order_Compute_ST(std::int32_t n, const cBYN_Table& graph,
                                                     const matrix<std::int32_t>& sizes,
                                                     const cBYN_Table& stages, cBYN_Table& order);
/// Maximal cliques, in the order found, and fill-in edges.
///
/// @param rows, columns out: neighbour rows of the triangulated graph
/// @param cliques       out, n x n
/// @param fill          out, n x n graph
NUMCORE_API void BYNRun_triangulate_Compute_ST(std::int32_t n, const cBYN_Table& moral, const cBYN_Table& order,
                                               cBYN_Table& rows, cBYN_Table& columns, cBYN_Table& cliques,
                                               cBYN_Table& fill);
/// Number of non-empty rows of a clique table, counted from the first.
NUMCORE_API std::int32_t BYNRun_clq_size_ST(std::int32_t n, const cBYN_Table& cliques);
/// Spanning tree of the cliques: 1 in (i, j) and (j, i) for each join.
///
/// @param closest  out, nCliques cells: the clique that each one was joined to, 0 for the first
/// @param joined   out, nCliques cells: cliques in the order they were joined
NUMCORE_API void BYNRun_cliques_to_jtree_ST(std::int32_t n, std::int32_t nCliques,
                                            const matrix<std::int32_t>& sizes, const cBYN_Table& cliques,
                                            cBYN_Table& tree, cBYN_Table& closest, cBYN_Table& joined);
/// Moral graph, best-first order, cliques, fill and tree of a graph of arcs.
NUMCORE_API void BYNRun_dagtojtree_Compute_ST(std::int32_t n, const cBYN_Table& dag,
                                              const matrix<double>& parents, const cST_MVect<u16string>& labels,
                                              const matrix<std::int32_t>& sizes, cBYN_Table& order,
                                              cBYN_Table& cliques, cBYN_Table& fill, cBYN_Table& tree);
/// For each node the first clique that holds it.
NUMCORE_API void BYNRun_clq_contain_node_ST(std::int32_t n, std::int32_t nCliques, const cBYN_Table& cliques,
                                            cBYN_Table& nodeClique);
/// Tree with a root: 1 in (parent, child); cliques in order of entering and of leaving.
NUMCORE_API void BYNRun_mk_rooted_tree_ST(std::int32_t root, std::int32_t nCliques, const cBYN_Table& tree,
                                          cBYN_Table& rooted, cBYN_Table& preorder, cBYN_Table& postorder);
/// The walk of `BYNRun_mk_rooted_tree_ST` from one clique, not back to the one it came from (0: none). Appends
/// to lists of nCliques cells that are there, behind their entries above 0.
NUMCORE_API void BYNRun_dfs2(std::int32_t clique, std::int32_t from, std::int32_t nCliques,
                             const cBYN_Table& tree, cBYN_Table& rooted, cBYN_Table& preorder,
                             cBYN_Table& postorder);
/// The whole junction tree, rooted at the first clique with node n.
/// @return number of cliques
NUMCORE_API std::int32_t BYNRun_jtree_inf_Compute_ST(
    std::int32_t n, const cBYN_Table& dag, const matrix<double>& parents, const cST_MVect<u16string>& labels,
    const matrix<std::int32_t>& sizes, cBYN_Table& order, cBYN_Table& cliques, cBYN_Table& tree,
    cBYN_Table& nodeClique, cBYN_Table& rooted, cBYN_Table& preorder, cBYN_Table& postorder);

// ---- Cliques, separators, families
// ------------------------------------------------------------------------------------------------------------

/// Nodes that cliques a and b share, as a list without gaps, then zeros.
NUMCORE_API void BYNRun_SeparatorNode(std::int32_t n, const cBYN_Table& cliques, std::int32_t a, std::int32_t b,
                                      cBYN_Table& separator);
/// Positions, from 1, of the shared nodes among the members of clique a.
NUMCORE_API void BYNRun_GetNodeposbetweenclq_ST(std::int32_t n, const cBYN_Table& cliques, std::int32_t a,
                                                std::int32_t b, cBYN_Table& positions);
/// The same in both cliques: column 1 for clique a, column 2 for clique b.
NUMCORE_API void BYNRun_GetCommunNodeposbetweenclq_ST(std::int32_t n, const cBYN_Table& cliques, std::int32_t a,
                                                      std::int32_t b, cBYN_Table& positions);
/// Position of the node with key "NODE"node; 0 without one.
NUMCORE_API std::int32_t BYNRun_ConvertID_ST(std::int32_t n, const cST_MVect<u16string>& labels,
                                             std::int32_t node);
/// The family of the node at a position: its parents in their order, then itself, then zeros.
NUMCORE_API void BYNRun_Convert_fam_ST(std::int32_t n, const matrix<double>& parents,
                                       const cST_MVect<u16string>& labels, std::int32_t node,
                                       cBYN_Table& family);
/// For each node the first clique that holds its family; 0 without one.
NUMCORE_API void BYNRun_clq_fam_ST(std::int32_t n, std::int32_t nCliques, const cBYN_Table& cliques,
                                   const matrix<double>& parents, const cST_MVect<u16string>& labels,
                                   cBYN_Table& familyClique);
/// Position, from 1, of node j in the table of clique i, in cell (i, j); 0 when it is no member.
NUMCORE_API void BYNRun_clq_Pos_ST(std::int32_t n, std::int32_t nCliques, const cBYN_Table& cliques,
                                   matrix<std::int32_t>& positions);

// ---- Tables of probabilities. Members are given as a list of nodes (cells from 1 on, zeros are passed over)
// in the order of the table's axes; sizes below 1 count as 1. A table that is shorter than its members ask for,
// or a node that is no member, leaves an output without cells, or all zeros when it had storage.
// ------------------------------------------------------------------------------------------------------------

/// Every clique's table with all cells 1, and its length.
NUMCORE_API void BYNRun_Init_pot_ST(std::int32_t n, std::int32_t nCliques, const matrix<std::int32_t>& sizes,
                                    const cBYN_Table& cliques, cBYN_Potentials& potentials,
                                    matrix<std::int32_t>& lengths);
/// Multiplies a conditional table over a family (parents, then the node) into a clique's table.
NUMCORE_API void BYNRun_multiply_by_pot_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                                           cBYN_Table& table, const cBYN_Table& family,
                                           const cBYN_Table& conditional);
/// Sums of a table for each joint state of some of its members.
NUMCORE_API void BYNRun_Marginalize_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                                       const cBYN_Table& table, const cBYN_Table& onto, cBYN_Table& out);
/// Multiplies a separator's message into a clique's table.
///
/// @param collect  flag: -1 on the way to the root, 0 on the way back; the product is the same
NUMCORE_API void BYNRun_multiply_by_sep_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                                           cBYN_Table& table, const cBYN_Table& separator,
                                           const cBYN_Table& message, std::int16_t collect);
/// The same, walking the cells of the separator and under each those of the clique.
NUMCORE_API void BYNRun_multiply_by_sep_BIS_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                                               cBYN_Table& table, const cBYN_Table& separator,
                                               const cBYN_Table& message, std::int16_t collect);
/// Divides a table by the old table of a separator; 0 / 0 is 0.
NUMCORE_API void BYNRun_divide_by_sep_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                                         cBYN_Table& table, const cBYN_Table& separator, const cBYN_Table& old);
/// Table of two members, all others summed out.
NUMCORE_API void BYNRun_Sum2Nodes_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                                     const cBYN_Table& table, std::int32_t first, std::int32_t second,
                                     cBYN_Table& out);
/// Table of the members that are left when some are summed out.
NUMCORE_API void BYNRun_SumNodes_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                                    const cBYN_Table& table, const cBYN_Table& nodes, cBYN_Table& out);
/// The same with one member, the child, summed out.
NUMCORE_API void BYNRun_SumChildNode_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                                        const cBYN_Table& table, std::int32_t child, cBYN_Table& out);
/// Scales each clique's table to the sum 1, from tables into out.
///
/// @param lengths  cells of each table
/// Kept: a total that is not above 0 leaves that clique of out as it was, and the total runs on; so a total
/// that is not a number spoils the cliques that follow.
NUMCORE_API void BYNRun_Normalise_ST(std::int32_t nCliques, const matrix<std::int32_t>& lengths,
                                     const cBYN_Potentials& tables, cBYN_Potentials& out);
/// P(node | given) from a joint table: a run of the node's states for each joint state of given; missing where
/// given has probability 0.
NUMCORE_API void BYNRun_CondTable_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                                     const cBYN_Table& table, std::int32_t node, const cBYN_Table& given,
                                     cBYN_Table& out);
/// One cell of `BYNRun_CondTable_ST`: P(node = state | given in givenStates), states from 1; missing for what
/// is not there.
NUMCORE_API double BYNRun_ProbConditional_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                                             const cBYN_Table& table, std::int32_t node, std::int32_t state,
                                             const cBYN_Table& given, const cBYN_Table& givenStates);
/// P(node), of sum 1, from a table; zeros when the table's sum is 0.
NUMCORE_API void BYNRun_Marg_Table_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                                      const cBYN_Table& table, std::int32_t node, cBYN_Table& out);
/// Labels of a conditional table: a row for each joint state of given, a column for each state of the node.
///
/// @param stateNames  a cell per state, node after node; empty: the states' numbers
/// @param nodeNames   a cell per node; empty: "NODE" and the number
NUMCORE_API void BYNRun_CondLabels_ST(const matrix<std::int32_t>& sizes, std::int32_t node,
                                      const cBYN_Table& given, const matrix<u16string>& nodeNames,
                                      const matrix<u16string>& stateNames, cST_MVect<u16string>& rowLabels,
                                      cST_MVect<u16string>& columnLabels);
/// Labels of a joint table, a row for each joint state of the members: "A=yes, B=no".
NUMCORE_API void BYNRun_JPDLabels_ST(const matrix<std::int32_t>& sizes, const cBYN_Table& members,
                                     const matrix<u16string>& nodeNames, const matrix<u16string>& stateNames,
                                     cST_MVect<u16string>& labels);

}  // namespace numcore
