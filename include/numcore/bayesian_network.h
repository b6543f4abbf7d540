/* Discrete Bayesian networks: exact inference by a junction tree, and a check for cycles.
 *
 * Nodes, states and cliques are numbered from 1; 0 says that there is none. What belongs to the nodes stands in
 * one array, node after node: a cell per state (blocks of sizes[i] rows), per joint state of a node's parents,
 * or per joint state of a family (the parents in their order, then the node). In every table of several nodes
 * the first one varies slowest, the last one fastest: a conditional table is a run of sizes[i] cells for each
 * joint state of the parents. */
#pragma once

#include "numcore/records.h"

/* BYN_Results.status and BYN_Forecast.status. */
enum NumcoreNetworkStatus {
    NUMCORE_BYN_DONE = 0,
    NUMCORE_BYN_NO_DATA = -1,   /* no parameters, no node, or no array of sizes */
    NUMCORE_BYN_BAD_SIZE = -2,  /* a node without a known number of states */
    NUMCORE_BYN_BAD_TABLE = -3, /* a conditional table that is absent, of another length, or holds a cell that
                                   is negative or not finite */
    NUMCORE_BYN_CYCLE = -4,     /* the arcs form a directed cycle */
    NUMCORE_BYN_BAD_EVIDENCE =
        -5, /* an observed state that the node has not, a likelihood below 0 or not finite */
    NUMCORE_BYN_TOO_LARGE = -6,  /* the tables would not fit the memory bound; the forecast is filled in */
    NUMCORE_BYN_IMPOSSIBLE = -7, /* the evidence has probability 0: every probability is missing */
    NUMCORE_BYN_BAD_QUERY = -8   /* status of a query only: no node, an unknown one, or the same one twice */
};

/* BYN_Param.mode. */
enum NumcoreNetworkMode {
    NUMCORE_BYN_INFER = 0,    /* tree and probabilities */
    NUMCORE_BYN_STRUCTURE = 1 /* the tree only: neither tables nor evidence are read */
};

typedef struct BYN_Bounds {
    double memory; /* bytes that the tables may take; 0 or less, or not a number: half of the physical memory */
    double reserved[3];
} BYN_Bounds;
NUMCORE_LAYOUT(sizeof(BYN_Bounds) == 32);

/* A network and what is known of it. The data set gives each node's key ("NODE7") in the first column of text
 * table 1, at the node's position: a parent number k is the node whose key is "NODE"k, the last one where keys
 * repeat, and is dropped when there is none. The data set's list of numeric tables gives the conditional
 * tables, one per node: cells column by column, such as one column for each joint state of the parents. */
typedef struct BYN_Param {
    SAFEARRAY* likelihoods; /* doubles, a cell per state: soft evidence, >= 0; null or empty: none */
    SAFEARRAY* observed;    /* 32-bit integers, a cell per node: observed state, 0 or less none; may be null */
    SAFEARRAY* tables;      /* doubles, node after node: conditional tables when the data set lists none */
    SAFEARRAY* nodeNames;   /* BSTR, a cell per node, for labels; null: the keys */
    SAFEARRAY* parents; /* doubles, a column per node: numbers of its parents; what is not positive is none */
    SAFEARRAY* queries; /* doubles of three dimensions, queries x rows x 2: numbers of the nodes asked for in
                           column 1, of the nodes they are conditioned on in column 2; 0 is none */
    int32_t n;          /* nodes */
    SAFEARRAY* sizes;   /* 32-bit integers, a cell per node: states; 0 or less is unknown */
    int32_t nQueries;   /* queries in use */
    SAFEARRAY* stateNames; /* BSTR, a cell per state, for labels; null: the states' numbers */
    BYN_Bounds bounds;
    int32_t mode; /* NumcoreNetworkMode */
} BYN_Param;
NUMCORE_LAYOUT(sizeof(BYN_Param) == 120);
NUMCORE_LAYOUT(offsetof(BYN_Param, observed) == 8 && offsetof(BYN_Param, tables) == 16);
NUMCORE_LAYOUT(offsetof(BYN_Param, nodeNames) == 24 && offsetof(BYN_Param, parents) == 32);
NUMCORE_LAYOUT(offsetof(BYN_Param, queries) == 40 && offsetof(BYN_Param, n) == 48);
NUMCORE_LAYOUT(offsetof(BYN_Param, sizes) == 56 && offsetof(BYN_Param, nQueries) == 64);
NUMCORE_LAYOUT(offsetof(BYN_Param, stateNames) == 72 && offsetof(BYN_Param, bounds) == 80);
NUMCORE_LAYOUT(offsetof(BYN_Param, mode) == 112);

/* Sizes of a junction tree, known before any table is allocated. */
typedef struct BYN_Forecast {
    SAFEARRAY* cliqueCells; /* doubles, n cells: table length of each clique; may be null */
    double cells;           /* in all clique tables; infinite when beyond the largest double */
    double largest;         /* in the largest of them */
    double separatorCells;  /* in all separator tables */
    double bytes;           /* of clique tables, and of separator tables twice */
    double bound;           /* bytes that were allowed */
    int32_t nCliques;
    int32_t nCliqueMembers;    /* members of all cliques together */
    int32_t nSeparatorMembers; /* members of all separators together */
    int32_t nMoralEdges;
    int32_t nFillEdges;
    int32_t status; /* DONE, NO_DATA, BAD_SIZE or TOO_LARGE */
} BYN_Forecast;
NUMCORE_LAYOUT(sizeof(BYN_Forecast) == 72);
NUMCORE_LAYOUT(offsetof(BYN_Forecast, cells) == 8 && offsetof(BYN_Forecast, nCliques) == 48);

/* What comes back. The caller supplies the arrays; a null array is not wanted, and what does not fit one is
 * dropped. Cells that no probability was computed for are missing. */
typedef struct BYN_Results {
    /* Titles and formats, a cell per node, from the host's texts. */
    SAFEARRAY* headers;            /* BSTR */
    SAFEARRAY* marginalTitles;     /* BSTR */
    SAFEARRAY* conditionalTitles;  /* BSTR */
    SAFEARRAY* marginalFormats;    /* BSTR: number format */
    SAFEARRAY* conditionalFormats; /* BSTR */
    SAFEARRAY* familyFormats;      /* BSTR; of nodes with a known size */
    /* Tables of the nodes. */
    SAFEARRAY* stateLabels;     /* BSTR, a cell per state */
    SAFEARRAY* marginals;       /* doubles: P(node | evidence) */
    SAFEARRAY* conditionLabels; /* BSTR, a cell per joint state of the parents: "A=yes, B=no" */
    SAFEARRAY* conditionals; /* doubles, a cell per family state: P(node | parents, evidence); missing where the
                                parents' state has probability 0 */
    SAFEARRAY* familyLabels; /* BSTR, a cell per family state */
    SAFEARRAY* familyJoints; /* doubles: P(family | evidence) */
    /* Tables of the cliques, clique after clique. */
    SAFEARRAY* jointLabels; /* BSTR, a cell per joint state */
    SAFEARRAY* joints;      /* doubles: P(clique | evidence) */
    /* Tables of the queries, query after query; conditioning nodes first (slowest), then the nodes asked for.
     * A query that is refused takes no room. */
    SAFEARRAY* queryStatus; /* 32-bit integers, a cell per query: DONE, BAD_QUERY or TOO_LARGE */
    SAFEARRAY* queryCells;  /* doubles, a cell per query: length of its table, told for a refused one too */
    SAFEARRAY* queryLabels; /* BSTR, a cell per joint state */
    SAFEARRAY* queryTables; /* doubles: P(asked for | conditioned on, evidence) */
    /* The tree: 32-bit integers unless said otherwise. Lists of members stand one after another. */
    SAFEARRAY* order;            /* nodes in order of elimination */
    SAFEARRAY* orderWeights;     /* doubles: weight of each as it was eliminated */
    SAFEARRAY* orderFills;       /* doubles: its counted fill cells */
    SAFEARRAY* fillFrom;         /* edges added by triangulation, lower node */
    SAFEARRAY* fillTo;           /* the same, higher node */
    SAFEARRAY* cliqueSizes;      /* number of members of each clique */
    SAFEARRAY* cliqueMembers;    /* nodes, ascending in each clique */
    SAFEARRAY* joinFrom;         /* joins in the order they are made: the clique already in the tree */
    SAFEARRAY* joinTo;           /* the same: the clique that joins it */
    SAFEARRAY* separatorSizes;   /* number of members of each join's separator */
    SAFEARRAY* separatorMembers; /* nodes, ascending in each separator */
    SAFEARRAY* cliqueParents;    /* parent of each clique in the rooted tree; 0 at the root */
    SAFEARRAY* preorder;         /* cliques */
    SAFEARRAY* postorder;        /* cliques */
    SAFEARRAY* familyCliques;    /* for each node the clique that takes its conditional table */
    BYN_Forecast forecast;
    double probability;    /* of the evidence; 0 below the smallest double, infinite beyond the largest */
    double logProbability; /* its natural logarithm; -infinity when it is impossible */
    int32_t root;          /* clique */
    int32_t status;        /* NumcoreNetworkStatus */
} BYN_Results;
NUMCORE_LAYOUT(sizeof(BYN_Results) == 360);
NUMCORE_LAYOUT(offsetof(BYN_Results, marginals) == 56 && offsetof(BYN_Results, joints) == 104);
NUMCORE_LAYOUT(offsetof(BYN_Results, queryTables) == 136 && offsetof(BYN_Results, order) == 144);
NUMCORE_LAYOUT(offsetof(BYN_Results, familyCliques) == 256 && offsetof(BYN_Results, forecast) == 264);
NUMCORE_LAYOUT(offsetof(BYN_Results, probability) == 336 && offsetof(BYN_Results, status) == 356);

NUMCORE_BEGIN_C

/** Looks for nodes on directed cycles through the exponential of the matrix of arcs.
 *
 *  Reads keys, parents and n. The exponential is the diagonal Pade approximant of degree 3, 5, 7, 9 or 13 by
 * the 1-norm of the matrix, without scaling; the number of nodes whose diagonal cell exceeds 1 is compared with
 * n. Deliberate: a norm above 5.37 (a node with six children) counts no node, and only a graph with every node
 * on a cycle is found. On a long cycle (some 17 nodes and more) the excess is below rounding. Higham (2005),
 * SIAM J. Matrix Anal. Appl. 26:1179-1193, for degrees and limits.
 *  @return 0 when every node is on a cycle; otherwise 1, null parameters included */
NUMCORE_API int32_t Cpp_BYNRun_DAG_ST(ST_DataSet* data, BYN_Param* param, BYN_Results* results,
                                      SystemInfo* system, QUORIXInfo* host);

/** Junction tree, evidence, marginal, conditional and joint probabilities of a network.
 *
 *  Moral graph, greedy elimination (lightest clique first, then fewest fill cells, then lowest number; among
 * all when none weighs 10000 or less), cliques joined by Prim's method (largest overlap, then lightest pair),
 * rooted at the first clique with the last node, collect and distribute with division. Lauritzen and
 * Spiegelhalter (1988), J. R. Stat. Soc. B 50:157-224; Jensen, Lauritzen and Olesen (1990), Comput. Stat. Q.
 * 4:269-282. Rows of the conditional tables are used as they are; each result is normalised once. Messages are
 * scaled by powers of 2, so that long evidence does not underflow. Titles take rows 319, 7510, 7511 and 7512 of
 * the host's resource group 10.
 *  @return 0 always; results->status tells how it went */
NUMCORE_API int32_t Cpp_BYNRun_Compute_ST(ST_DataSet* data, BYN_Param* param, BYN_Results* results,
                                          SystemInfo* system, QUORIXInfo* host);

/** Sizes of the junction tree that `Cpp_BYNRun_Compute_ST` would build: no table is allocated.
 *  @return forecast->status, or NUMCORE_BYN_NO_DATA without a record */
NUMCORE_API int32_t Cpp_BYNRun_Forecast_ST(ST_DataSet* data, BYN_Param* param, BYN_Forecast* forecast);

/** n! as a double, correctly rounded; the missing value for n < 0, the overflow marker for n > 170. */
NUMCORE_API double facto(int32_t n);

NUMCORE_END_C
