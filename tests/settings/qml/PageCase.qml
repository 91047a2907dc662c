import QtQuick

// What tests of a page on a stage share.
DrawnCase {
    required property PageStage stage

    host: stage.host

    function cleanup() {
        stage.shownPage = null;
        host.enabled = true;
    }
    function openPage(content) {
        stage.shownPage = null; // the one before is gone when the next one is made
        stage.shownPage = bench.page(content);
        verify(waitForRendering(host.item));
    }
}
