// Arithmetic, repetition and sequences of the Boost preprocessor library up to
// their limit of 256.
#include <boost/preprocessor.hpp>

#define ARITHMETIC(z, n, d) \
  BOOST_PP_ADD(n, BOOST_PP_SUB(9, n)) BOOST_PP_MUL(BOOST_PP_DIV(n, 2), 5) BOOST_PP_MOD(n, 3);
BOOST_PP_REPEAT(6, ARITHMETIC, ~)
BOOST_PP_ADD(255, 1) BOOST_PP_SUB(256, 255) BOOST_PP_INC(256) BOOST_PP_DEC(0) BOOST_PP_LESS(255, 256)

#define DECLARE(z, n, text) BOOST_PP_COMMA_IF(n) text##n = BOOST_PP_INC(n)
int BOOST_PP_REPEAT(256, DECLARE, x);
BOOST_PP_ENUM_PARAMS(256, class T)
BOOST_PP_ENUM_BINARY_PARAMS(256, T, a)
#define PAIR(z, n, d) (d n)
#define ROW(z, n, d) BOOST_PP_REPEAT_##z(12, PAIR, n)
BOOST_PP_REPEAT(40, ROW, ~)

#define BELOW_256(r, state) BOOST_PP_NOT_EQUAL(state, 256)
#define NEXT(r, state) BOOST_PP_INC(state)
#define WRITE(r, state) state;
BOOST_PP_FOR(0, BELOW_256, NEXT, WRITE)
#define BELOW_8(d, s) BOOST_PP_LESS(s, 8)
BOOST_PP_WHILE(BELOW_8, NEXT, 0)

#define SEQ \
  (0)(1)(2)(3)(4)(5)(6)(7)(8)(9)(10)(11)(12)(13)(14)(15)(16)(17)(18)(19)(20)(21)(22)(23)(24) \
  (25)(26)(27)(28)(29)(30)(31)(32)(33)(34)(35)(36)(37)(38)(39)(40)(41)(42)(43)(44)(45)(46) \
  (47)(48)(49)(50)(51)(52)(53)(54)(55)(56)(57)(58)(59)(60)(61)(62)(63)(64)(65)(66)(67)(68) \
  (69)(70)(71)(72)(73)(74)(75)(76)(77)(78)(79)(80)(81)(82)(83)(84)(85)(86)(87)(88)(89)(90) \
  (91)(92)(93)(94)(95)(96)(97)(98)(99)(100)(101)(102)(103)(104)(105)(106)(107)(108)(109) \
  (110)(111)(112)(113)(114)(115)(116)(117)(118)(119)(120)(121)(122)(123)(124)(125)(126)(127) \
  (128)(129)(130)(131)(132)(133)(134)(135)(136)(137)(138)(139)(140)(141)(142)(143)(144)(145) \
  (146)(147)(148)(149)(150)(151)(152)(153)(154)(155)(156)(157)(158)(159)(160)(161)(162)(163) \
  (164)(165)(166)(167)(168)(169)(170)(171)(172)(173)(174)(175)(176)(177)(178)(179)(180)(181) \
  (182)(183)(184)(185)(186)(187)(188)(189)(190)(191)(192)(193)(194)(195)(196)(197)(198)(199) \
  (200)(201)(202)(203)(204)(205)(206)(207)(208)(209)(210)(211)(212)(213)(214)(215)(216)(217) \
  (218)(219)(220)(221)(222)(223)(224)(225)(226)(227)(228)(229)(230)(231)(232)(233)(234)(235) \
  (236)(237)(238)(239)(240)(241)(242)(243)(244)(245)(246)(247)(248)(249)(250)(251)(252)(253) \
  (254)(255)
BOOST_PP_SEQ_SIZE(SEQ)
#define JOIN(s, state, x) BOOST_PP_CAT(state, x)
BOOST_PP_SEQ_FOLD_LEFT(JOIN, s, SEQ)
#define SUFFIX(s, data, e) BOOST_PP_CAT(e, data)
BOOST_PP_SEQ_TRANSFORM(SUFFIX, _x, SEQ)
BOOST_PP_SEQ_REVERSE(SEQ)
#define EACH(r, data, e) [e data]
BOOST_PP_SEQ_FOR_EACH(EACH, q, SEQ)
BOOST_PP_SEQ_ENUM(SEQ)
#define PRODUCT(r, product) product;
BOOST_PP_SEQ_FOR_EACH_PRODUCT(PRODUCT, ((a)(b)(c))((1)(2)(3))((x)(y)))

BOOST_PP_TUPLE_ELEM(3, 1, (a, b, c)) BOOST_PP_TUPLE_REVERSE((a, b, c, d))
BOOST_PP_LIST_FOR_EACH(EACH, l, (a, (b, (c, BOOST_PP_NIL))))
BOOST_PP_ARRAY_ELEM(1, (3, (a, b, c)))
BOOST_PP_VARIADIC_SIZE(a, b, c, d) BOOST_PP_OVERLOAD(F_, 1, 2, 3)
BOOST_PP_STRINGIZE(BOOST_PP_CAT(a, b)) BOOST_PP_IS_BEGIN_PARENS((a))

#define BOOST_PP_ITERATION_PARAMS_1 (3, (1, 40, "boost_iteration.h"))
#include BOOST_PP_ITERATE()
#define BOOST_PP_LOCAL_MACRO(n) int v##n;
#define BOOST_PP_LOCAL_LIMITS (0, 255)
#include BOOST_PP_LOCAL_ITERATE()
