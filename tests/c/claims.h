/* Every test of the C files, a function each. */
#ifndef QELFMT_TESTS_C_CLAIMS_H
#define QELFMT_TESTS_C_CLAIMS_H

/* clang-format off */
#define C_TESTS(test) \
    test(StructuresHaveTheLayoutThatCallersCompiled) \
    test(TagsStandBesideThoseOfThePlatform) \
    test(TagZeroIsAnInvalidDrawing) \
    test(ADeletedSheetIsRefusedOrHasNoFormat) \
    test(AForeignTagIsRefusedOrHasNoFormat) \
    test(ATagOfAnEarlierSessionIsNoDrawing) \
    test(LifeMayBeginAndEndInAnyOrder) \
    test(WithoutDefinitionsNoFormatIsKnown) \
    test(TheLastErrorSurvivesSuccesses) \
    test(TheStartUpExitMayRunAgain) \
    test(AFormatIsPlacedAskedAndDeleted) \
    test(FormatErrorsNameWhatIsMissing) \
    test(LongNamesAreCutForTheBuffers) \
    test(UpdatingChangesNothingThatIsUpToDate) \
    test(BlocksAreAddedListedMovedAndDeleted) \
    test(BlockErrorsNameWhatIsMissing) \
    test(FieldValuesComeBackAsTheyWereGiven) \
    test(FieldErrorsNameWhatIsMissing) \
    test(NullAndEmptyFieldArgumentsAreRefused) \
    test(LongTextsAreKeptWhole) \
    test(ManyLinesAreKeptInOrder) \
    test(EditabilityOfFieldsIsOneOrZero) \
    test(RowsAreAddedFilledAndDeleted) \
    test(TableErrorsNameWhatIsMissing) \
    test(NullAndEmptyTableArgumentsAreRefused) \
    test(EditabilityOfRowsIsOneOrZero) \
    test(SymbolsStandWhereTheyWerePlaced) \
    test(AVetoedBlockIsGone) \
    test(CallbacksMayCallTheLibrary) \
    test(CallbacksMayClearThemselves) \
    test(CallbacksGetTheIdentifiers) \
    test(EveryErrorIsProvokedByAWrongName) \
    test(EveryErrorIsProvokedByAnEmptyName) \
    test(EveryErrorIsProvokedByANullName) \
    test(EveryErrorIsProvokedByALongName) \
    test(ErrorsAreTestedFromTheSheetDown) \
    test(ABlockNeedsAPlaceOnTheFormat) \
    test(AFormatWhoseDefinitionIsGoneIsNotUpdated) \
    test(AReleasedListMayBeReleasedAgain) \
    test(AnExceptionOfACallbackEndsTheCall) \
    test(AnExceptionOfAnotherKindPassesThrough) \
    test(ACallbackMayDeleteWhatItIsToldOf) \
    test(ACallbackMayDeleteTheFormat) \
    test(ACallbackMayEndTheLibrary) \
    test(ACallbackMayInstallAnother) \
    test(ManyLinesOfARowAreKeptInOrder) \
    test(LongTextsOfARowAreKeptWhole)
/* clang-format on */

#define DECLARE(name) void c_##name(void);
#ifdef __cplusplus
extern "C" {
#endif
C_TESTS(DECLARE)
#ifdef __cplusplus
}
#endif
#undef DECLARE

#endif
