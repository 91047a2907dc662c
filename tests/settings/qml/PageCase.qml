import QtQuick

// What tests of a page on a stage share.
DrawnCase {
    required property PageStage stage

    host: stage.host

    function cleanup() {
        stage.shownPage = null;
        host.enabled = true;
    }
    // The page before it is gone when the next one is made.
    function openPage(make) {
        stage.shownPage = null;
        stage.shownPage = make();
        verify(waitForRendering(host.item));
    }
}
